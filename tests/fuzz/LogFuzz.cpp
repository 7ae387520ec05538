// The logs of an unfinished hive: whatever they hold, the hive gets what it can be finished with, or stays as it was.
#include <cstdint>
#include <string>

#include "kvstation/hives/BaseBlock.h"
#include "kvstation/hives/HiveLog.h"
#include "tests/fuzz/Check.h"
#include "tests/kvstation/hives/HiveWriter.h"
#include "tests/kvstation/hives/LogWriter.h"

// The first two bytes say where the first log ends and the second begins, in blocks of 512 bytes, as they are written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string whole = kvstation::unfinished(kvstation::emptyHive());
    if (size < 2)
        return 0;
    const std::string bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::size_t first = std::min(bytes.size(), (data[0] + std::size_t{256} * data[1]) * kvstation::kSector);
    std::string hive = whole;
    const bool isApplied =
        !kvstation::applyLogs(hive, {{"LOG1", bytes.substr(0, first)}, {"LOG2", bytes.substr(first)}}).empty();
    kvfuzz::wasRefused = !isApplied;
    kvfuzz::check(isApplied || hive == whole, "a hive without a log that goes with it stays as it was");
    kvfuzz::check(hive.size() >= whole.size(), "a hive gets no shorter");
    kvfuzz::check(hive.size() <= kvstation::kBaseBlock + kvstation::kLongestHive, "a hive stays within its limit");
    const kvstation::BaseBlock block(hive);
    kvfuzz::check(!isApplied || (block.hasRightSum() && block.firstSequence() == block.secondSequence()),
                  "a hive to which a log was applied is finished");
    return 0;
}
