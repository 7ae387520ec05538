// The one line of a tool that cannot go on, and its end. Neither takes memory or a lock: another thread may hold the
// heap's or the loader's for good. Windows only.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "framework/Windows.h"

namespace kvstation {

class LastWords {
  public:
    // Begins with the tool's name. What is too long for a line is cut.
    LastWords() { add("kvstation: "); }

    LastWords& add(std::string_view text);
    LastWords& addNumber(std::uint64_t number);
    // "0xC0000005": with leading zeros where it has fewer digits.
    LastWords& addHex(std::uint64_t number, std::size_t digits = 1);
    // "kvcstat64.dll+0x1A2B", or the address where it is in no library.
    LastWords& addPlace(const void* address);

    // Writes the line to the file and ends the process, with the status of a failure.
    [[noreturn]] void end(HANDLE file);

  private:
    LastWords& addDigits(std::uint64_t number, std::size_t base, std::size_t digits);

    std::array<char, 1024> m_text{};
    std::size_t m_length = 0;
};

}  // namespace kvstation
