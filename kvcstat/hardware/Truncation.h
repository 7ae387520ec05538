// Floating point to 32-bit integers, for every value: what the x86-64 conversion instruction yields, which the numbers
// of stations have always come from. C++ itself defines only what fits.
#pragma once

#include <cstdint>
#include <limits>

// Towards zero; the most negative number for all that does not fit, NaN and infinities included.
constexpr std::int32_t TruncateToInt32(double number) noexcept {
    return number > -2147483649.0 && number < 2147483648.0 ? static_cast<std::int32_t>(number)
                                                           : std::numeric_limits<std::int32_t>::min();
}

// Towards zero in 64 bits, of which the lower 32 stay; 0 for all that does not fit 64 signed bits.
constexpr std::uint32_t TruncateToUInt32(double number) noexcept {
    constexpr double kLimit = 9223372036854775808.0;
    return number >= -kLimit && number < kLimit ? static_cast<std::uint32_t>(static_cast<std::int64_t>(number)) : 0;
}
