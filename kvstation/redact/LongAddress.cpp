#include "kvstation/redact/LongAddress.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "simwin/text/HexText.h"

namespace kvstation {
namespace {

constexpr std::size_t kMostDigits = 4;
constexpr std::string_view kGap = "::";

// "a:b" is two groups, nothing is none; an empty group is no text of groups.
std::optional<std::vector<std::uint16_t>> groupsOf(std::string_view text) {
    std::vector<std::uint16_t> groups;
    while (!text.empty()) {
        const std::string_view digits = text.substr(0, text.find(':'));
        std::uint16_t group = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), group, 16);
        if (error != std::errc() || end != digits.data() + digits.size() || digits.size() > kMostDigits)
            return std::nullopt;
        groups.push_back(group);
        text.remove_prefix(digits.size());
        if (text == ":")
            return std::nullopt;
        text.remove_prefix(text.empty() ? 0 : 1);
    }
    return groups;
}

std::size_t groupsIn(std::string_view text) {
    return text.empty() ? 0 : static_cast<std::size_t>(std::ranges::count(text, ':')) + 1;
}

}  // namespace

std::optional<IPv6> parseIPv6(std::string_view text) {
    const std::size_t gap = text.find(kGap);
    const bool hasGap = gap != std::string_view::npos;
    const auto front = groupsOf(text.substr(0, gap));
    const auto back = groupsOf(hasGap ? text.substr(gap + kGap.size()) : std::string_view());
    if (!front || !back)
        return std::nullopt;
    IPv6 address{};
    const std::size_t count = front->size() + back->size();
    if (count == 0 || (hasGap ? count >= address.size() : count != address.size()))
        return std::nullopt;
    std::ranges::copy(*front, address.begin());
    std::ranges::copy(*back, address.end() - static_cast<std::ptrdiff_t>(back->size()));
    return address;
}

std::string inWritingOf(std::string_view text, const IPv6& address) {
    const bool isUpper = std::ranges::any_of(text, [](char c) { return c >= 'A' && c <= 'F'; });
    const auto letters = isUpper ? simwin::HexCase::Upper : simwin::HexCase::Lower;
    std::string made;
    std::size_t index = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ':') {
            if (text.substr(i).starts_with(kGap))
                index = address.size() - groupsIn(text.substr(i + kGap.size()));
            const std::size_t length = text.substr(i).starts_with(kGap) ? kGap.size() : 1;
            made += text.substr(i, length);
            i += length;
            continue;
        }
        const std::size_t width = std::min(text.find(':', i), text.size()) - i;
        made += simwin::hexDigits(address.at(index++), width, letters);
        i += width;
    }
    return made;
}

}  // namespace kvstation
