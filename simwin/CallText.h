// How a call's arguments and answers read in the log. Everything is appended as UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace simwin {

class Machine;

// In double quotes, with what is no printable character as \xNN, and cut at 512 bytes.
void appendQuoted(std::string& text, std::string_view bytes);

// As quoted text where the bytes are printable and end in their only NULs, else as pairs of hexadecimal digits.
void appendBytes(std::string& text, std::string_view bytes);

void appendNumber(std::string& text, std::int64_t number);
void appendNumber(std::string& text, std::uint64_t number);

// The number in hexadecimal digits and, where it is open, what it stands for.
void appendHandle(std::string& text, Machine& machine, std::uintptr_t handle);

}  // namespace simwin
