// A whole station out of the fuzzer's bytes.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "simwin/station/Station.h"
#include "tests/fuzz/InputReader.h"

namespace kvfuzz {

// The variables that are set at random.
std::span<const std::string_view> fuzzedVariables();

// Reads to the input's end, but no more than some dozens of items: longer inputs only cost time. The input chooses the
// ANSI code page unless one is given.
simwin::Station readFuzzedStation(InputReader& input, std::optional<unsigned> codePage = std::nullopt);

}  // namespace kvfuzz
