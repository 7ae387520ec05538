// The logs of hives before Windows 8.1: a map of the pages that were to be written, and these pages.
#pragma once

#include <string>
#include <vector>

#include "kvstation/hives/HiveLog.h"

namespace kvstation {

// As applyLogs, of usable logs. The log that goes with a hive was begun at the same time.
std::vector<std::string> applyLogPages(std::string& hive, const std::vector<const LogFile*>& logs);

}  // namespace kvstation
