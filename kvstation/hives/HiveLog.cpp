#include "kvstation/hives/HiveLog.h"

#include "kvstation/hives/BaseBlock.h"
#include "kvstation/hives/LogEntries.h"
#include "kvstation/hives/LogPages.h"

namespace kvstation {
namespace {

// Written to its end, or it helps nobody.
bool isUsable(const LogFile& log) {
    const BaseBlock block(log.bytes);
    return log.bytes.size() > kSector && block.hasSignature() && block.hasRightSum() &&
           block.firstSequence() == block.secondSequence() && block.binsSize() % kPage == 0 &&
           block.binsSize() <= kLongestHive;
}

}  // namespace

std::vector<std::string> applyLogs(std::string& hive, const std::vector<LogFile>& logs) {
    std::vector<const LogFile*> usable;
    for (const LogFile& log : logs)
        if (isUsable(log))
            usable.push_back(&log);
    if (usable.empty())
        return {};
    std::vector<std::string> applied = applyLogEntries(hive, usable);
    return applied.empty() ? applyLogPages(hive, usable) : applied;
}

}  // namespace kvstation
