#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <optional>
#include <string>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"

using namespace simwin;

namespace {

#ifdef _WIN32
using FormatArguments = va_list;
#define SIMWIN_FORMAT_START va_start
#define SIMWIN_FORMAT_END va_end
#else
// The call has Windows' calling convention here too, and so have its arguments.
using FormatArguments = __builtin_ms_va_list;
#define SIMWIN_FORMAT_START __builtin_ms_va_start
#define SIMWIN_FORMAT_END __builtin_ms_va_end
#endif

constexpr std::size_t kLongestFormatted = 1024;  // with the terminator

struct FormatSpecification {
    bool isLeft = false;
    bool hasPrefix = false;
    bool isZeroPadded = false;
    bool is64Bit = false;
    std::size_t width = 0;
    std::optional<std::size_t> precision;
    char kind = '\0';
};

std::size_t takeDigits(const char*& format) {
    std::size_t number = 0;
    for (; *format >= '0' && *format <= '9'; ++format)
        number = std::min<std::size_t>(number * 10 + static_cast<std::size_t>(*format - '0'), kLongestFormatted);
    return number;
}

void takeFlags(const char*& format, FormatSpecification& found) {
    for (;; ++format) {
        if (*format == '-')
            found.isLeft = true;
        else if (*format == '#')
            found.hasPrefix = true;
        else if (*format == '0')
            found.isZeroPadded = true;
        else
            return;
    }
}

// What stands behind a percent sign; `format` then begins behind it.
FormatSpecification takeSpecification(const char*& format) {
    FormatSpecification found;
    takeFlags(format, found);
    found.width = takeDigits(format);
    if (*format == '.')
        found.precision = takeDigits(++format);
    if (std::strncmp(format, "I64", 3) == 0) {
        found.is64Bit = true;
        format += 3;
    }
    while (*format == 'l' || *format == 'h')
        ++format;
    if (*format != '\0')
        found.kind = *format++;
    return found;
}

std::string digitsOf(std::uint64_t number, unsigned base, bool isUpper) {
    const char* const hexDigits = isUpper ? "0123456789ABCDEF" : "0123456789abcdef";
    std::string digits;
    do {
        digits.insert(digits.begin(), hexDigits[number % base]);
        number /= base;
    } while (number != 0);
    return digits;
}

std::string formatNumber(const FormatSpecification& wanted, std::uint64_t bits) {
    const bool isSigned = wanted.kind == 'd' || wanted.kind == 'i';
    const auto number = wanted.is64Bit ? static_cast<std::int64_t>(bits) : static_cast<std::int32_t>(bits);
    const bool isNegative = isSigned && number < 0;
    std::uint64_t magnitude = wanted.is64Bit ? bits : static_cast<std::uint32_t>(bits);
    if (isNegative)
        magnitude = static_cast<std::uint64_t>(0) - static_cast<std::uint64_t>(number);
    const bool isHex = wanted.kind == 'x' || wanted.kind == 'X';
    std::string digits = digitsOf(magnitude, isHex ? 16 : 10, wanted.kind == 'X');
    std::string prefix = isNegative ? "-" : "";
    if (isHex && wanted.hasPrefix)
        prefix = wanted.kind == 'X' ? "0X" : "0x";
    std::size_t least = wanted.precision.value_or(1);
    if (wanted.isZeroPadded && !wanted.isLeft && wanted.width > prefix.size())
        least = std::max(least, wanted.width - prefix.size());
    if (digits.size() < least)
        digits.insert(0, least - digits.size(), '0');
    return prefix + digits;
}

std::string padded(const FormatSpecification& wanted, std::string text) {
    if (text.size() < wanted.width)
        text.insert(wanted.isLeft ? text.size() : 0, wanted.width - text.size(), ' ');
    return text;
}

std::string formatArgument(const FormatSpecification& wanted, FormatArguments& arguments) {
    switch (wanted.kind) {
        case 's': {
            const char* text = va_arg(arguments, const char*);
            const std::string_view whole = text != nullptr ? text : "(null)";
            return std::string(whole.substr(0, wanted.precision.value_or(whole.size())));
        }
        case 'c':
            return std::string(1, static_cast<char>(va_arg(arguments, int)));
        case 'd':
        case 'i':
        case 'u':
        case 'x':
        case 'X':
            return formatNumber(wanted,
                                wanted.is64Bit ? va_arg(arguments, std::uint64_t) : va_arg(arguments, std::uint32_t));
        default:
            return wanted.kind != '\0' ? std::string(1, wanted.kind) : std::string();
    }
}

std::string formatAll(const char* format, FormatArguments& arguments) {
    std::string text;
    while (*format != '\0') {
        if (*format != '%') {
            text.push_back(*format++);
            continue;
        }
        ++format;
        const FormatSpecification wanted = takeSpecification(format);
        text += padded(wanted, formatArgument(wanted, arguments));
    }
    return text.substr(0, kLongestFormatted - 1);
}

}  // namespace

int WINAPIV sim_wsprintfA(LPSTR buffer, LPCSTR format, ...) {
    FormatArguments arguments;
    SIMWIN_FORMAT_START(arguments, format);
    const std::string text = formatAll(format != nullptr ? format : "", arguments);
    SIMWIN_FORMAT_END(arguments);
    return makeCall<[](char* place, const char* whole) { return sim_wsprintfA(place, "%s", whole); }>(
        "wsprintfA", kNeverFails,
        [&](Machine&) -> int {
            if (buffer == nullptr)
                return 0;
            std::memcpy(buffer, text.c_str(), text.size() + 1);
            return static_cast<int>(text.size());
        },
        TextBuffer{buffer, kLongestFormatted}, FormattedText{{text.c_str()}});
}
