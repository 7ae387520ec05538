// Numbers in the bytes of a file, lowest byte first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kvstation {

// 0 where the bytes end before it does.
template <class Number = std::uint32_t>
Number numberAt(std::string_view bytes, std::size_t place) {
    Number number = 0;
    if (place > bytes.size() || bytes.size() - place < sizeof number)
        return number;
    for (std::size_t i = sizeof number; i-- > 0;)
        number = static_cast<Number>(number << 8 | static_cast<unsigned char>(bytes[place + i]));
    return number;
}

// The bytes must hold it.
inline void putNumber(std::string& bytes, std::size_t place, std::uint32_t number) {
    for (std::size_t i = 0; i < sizeof number; ++i)
        bytes[place + i] = static_cast<char>(static_cast<unsigned char>(number >> 8 * i));
}

}  // namespace kvstation
