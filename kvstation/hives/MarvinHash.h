// The hash that Windows puts over the entries of a hive's log.
#pragma once

#include <cstdint>
#include <string_view>

namespace kvstation {

// Marvin32 of the bytes, its two halves as one number.
std::uint64_t marvinHash(std::string_view bytes, std::uint64_t seed);

}  // namespace kvstation
