// A whole station out of the fuzzer's bytes.
#pragma once

#include "simwin/Station.h"
#include "tests/fuzz/InputReader.h"

namespace kvfuzz {

// Reads to the input's end, but no more than some dozens of items: longer inputs only cost time.
simwin::Station readFuzzedStation(InputReader& input);

}  // namespace kvfuzz
