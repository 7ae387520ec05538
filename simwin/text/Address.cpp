#include "simwin/text/Address.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstring>

namespace simwin {
namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;

// One number at the start of `text`, which then begins behind it.
std::optional<std::uint64_t> takeNumber(std::string_view& text) {
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    } else if (text.starts_with('0')) {
        base = 8;
    }
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc())
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

// The address whose first `count - 1` numbers are bytes and whose last one fills the rest.
std::optional<std::uint32_t> combine(const std::array<std::uint64_t, 4>& numbers, std::size_t count) {
    std::uint64_t address = 0;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        if (numbers[i] > 0xFF)
            return std::nullopt;
        address = address << 8 | numbers[i];
    }
    const auto restBits = static_cast<unsigned>(8 * (5 - count));
    if (numbers[count - 1] >> restBits != 0)
        return std::nullopt;
    return static_cast<std::uint32_t>(address << restBits | numbers[count - 1]);
}

std::uint32_t inNetworkOrder(std::uint32_t address) {
    const std::array<unsigned char, 4> bytes = {
        static_cast<unsigned char>(address >> 24), static_cast<unsigned char>(address >> 16),
        static_cast<unsigned char>(address >> 8), static_cast<unsigned char>(address)};
    return std::bit_cast<std::uint32_t>(bytes);
}

}  // namespace

std::optional<std::string> parseDotted(std::string_view text) {
    std::string bytes;
    const char* place = text.data();
    const char* end = text.data() + text.size();
    for (int i = 0; i < 4; ++i) {
        if (i != 0 && (place == end || *place++ != '.'))
            return std::nullopt;
        unsigned number = 0;
        const auto [next, error] = std::from_chars(place, end, number);
        if (error != std::errc() || number > 0xFF)
            return std::nullopt;
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(number)));
        place = next;
    }
    return place == end ? std::optional(bytes) : std::nullopt;
}

std::string dotted(std::string_view fourBytes) {
    std::string text;
    for (const char byte : fourBytes.substr(0, 4)) {
        if (!text.empty())
            text += '.';
        text += std::to_string(static_cast<unsigned char>(byte));
    }
    return text;
}

std::uint32_t internetAddress(std::string_view text) {
    text = text.substr(0, text.find_first_of(" \t\r\n\v\f"));
    std::array<std::uint64_t, 4> numbers{};
    std::size_t count = 0;
    for (; count < numbers.size(); text.remove_prefix(1)) {
        const std::optional<std::uint64_t> number = takeNumber(text);
        if (!number)
            return kNone;
        numbers[count++] = *number;
        if (!text.starts_with('.'))
            break;
    }
    const std::optional<std::uint32_t> address = text.empty() ? combine(numbers, count) : std::nullopt;
    return address ? inNetworkOrder(*address) : kNone;
}

}  // namespace simwin
