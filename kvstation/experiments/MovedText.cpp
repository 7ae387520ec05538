#include "kvstation/experiments/MovedText.h"

#include <algorithm>
#include <string>

#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kShortestPart = 3;  // shorter ones count only as whole texts: they stand anywhere by chance

struct Middle {
    std::size_t begin;
    std::size_t end;        // in the value before
    std::size_t endBehind;  // in the value after
};

// What is left between the longest common beginning and end.
Middle middleOf(std::string_view before, std::string_view after) {
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t begin = 0;
    while (begin < shorter && before[begin] == after[begin])
        ++begin;
    std::size_t common = 0;
    while (common < shorter - begin && before[before.size() - 1 - common] == after[after.size() - 1 - common])
        ++common;
    return {begin, before.size() - common, after.size() - common};
}

// How far the texts before a place go on alike.
std::size_t commonBefore(std::string_view left, std::size_t leftEnd, std::string_view right, std::size_t rightEnd) {
    std::size_t count = 0;
    while (count < std::min(leftEnd, rightEnd) && left[leftEnd - 1 - count] == right[rightEnd - 1 - count])
        ++count;
    return count;
}
std::size_t commonBehind(std::string_view left, std::string_view right) {
    const auto [end, other] = std::mismatch(
        left.begin(), left.begin() + static_cast<std::ptrdiff_t>(std::min(left.size(), right.size())), right.begin());
    return static_cast<std::size_t>(end - left.begin());
}

// The most characters of a value around its middle that stand in the text just so. What both texts have in common
// stands outside of the middle and belongs to the part all the same.
std::size_t largestPart(std::string_view value, std::size_t begin, std::size_t end, std::string_view text) {
    const std::string_view part = value.substr(begin, end - begin);
    std::size_t largest = 0;
    for (std::size_t place = text.find(part); place != std::string_view::npos; place = text.find(part, place + 1))
        largest = std::max(largest, commonBefore(value, begin, text, place) + part.size() +
                                        commonBehind(value.substr(end), text.substr(place + part.size())));
    return largest;
}

Role roleOfMiddle(const std::string& value, const std::string& moved, const std::string& text,
                  const std::string& other) {
    const Middle middle = middleOf(value, moved);
    if (middle.begin == middle.endBehind)
        return Role::Decides;
    const std::size_t part = largestPart(value, middle.begin, middle.end, text);
    const std::size_t otherPart = largestPart(moved, middle.begin, middle.endBehind, other);
    if (part == value.size() && otherPart == moved.size())
        return Role::Gives;
    const auto isPart = [](std::size_t size, const std::string& whole) {
        return size >= kShortestPart || (size == whole.size() && size != 0);
    };
    return isPart(part, text) && isPart(otherPart, other) ? Role::Adds : Role::Decides;
}

}  // namespace

std::string plain(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = simwin::characterLength(text);
        const std::string small = simwin::lowerCase(text.substr(0, length));
        if (simwin::isAsciiDigit(small[0]) || (small[0] >= 'a' && small[0] <= 'z') || simwin::byteOf(small[0]) >= 0x80)
            result += small;
        text.remove_prefix(length);
    }
    return result;
}

Role roleOfText(std::string_view before, std::string_view after, const Replacement& replacement) {
    const std::string value = plain(before);
    const std::string moved = plain(after);
    const std::string text = plain(replacement.before);
    const std::string other = plain(replacement.after);
    if (value.empty() || value == moved || text.empty() || other.empty())
        return Role::Decides;
    const Role role = roleOfMiddle(value, moved, text, other);
    // Other parts of a list may change too, such as how many of a kind there are.
    const bool isPart = text.size() >= kShortestPart && value.find(text) != std::string::npos &&
                        moved.find(other) != std::string::npos && value.find(other) == std::string::npos;
    return role == Role::Decides && isPart ? Role::Adds : role;
}

Role roleOfNumber(std::string_view before, std::string_view after, const Replacement& replacement) {
    const auto begins = [](std::string_view text, std::string_view number) {
        return text.starts_with(number) && (text.size() == number.size() || !simwin::isAsciiDigit(text[number.size()]));
    };
    return begins(replacement.before, before) && begins(replacement.after, after) ? Role::Gives : Role::Decides;
}

}  // namespace kvstation
