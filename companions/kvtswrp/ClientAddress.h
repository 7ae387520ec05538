#pragma once

#include <cstddef>

// Writes the dotted IPv4 address that an answer to WTSClientAddress holds, such as "192.168.7.20". The answer is a
// WTS_CLIENT_ADDRESS of `bytes` bytes: the address family in the first four, then the address. False, with an empty
// buffer, for another family, for an answer that is too short, and for 0.0.0.0, which is no client's address.
bool FormatClientAddress(const void* answer, std::size_t bytes, char* buffer, int size) noexcept;
