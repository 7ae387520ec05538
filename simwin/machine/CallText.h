// How a call's arguments and answers read in the log. Everything is appended as UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "framework/WindowsSockets.h"

namespace simwin {

class Machine;

// In double quotes, with what is no printable character as \xNN, and cut at 512 bytes.
void appendQuoted(std::string& text, std::string_view bytes);

// As quoted text where the bytes are printable and end in their only NULs, else as pairs of hexadecimal digits, of 64
// bytes at most.
void appendBytes(std::string& text, std::string_view bytes);

void appendNumber(std::string& text, std::int64_t number);
void appendNumber(std::string& text, std::uint64_t number);

// What the handle stands for, where it is open, and in a log its number in hexadecimal digits.
void appendHandle(std::string& text, Machine& machine, std::uintptr_t handle);

// A resolver's answer: its name and its addresses, dotted where they have four bytes.
void appendHost(std::string& text, const winsock::HostEntry* host);

}  // namespace simwin
