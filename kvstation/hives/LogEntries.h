// The logs of hives since Windows 8.1: entries with a number and whole pages.
#pragma once

#include <string>
#include <vector>

#include "kvstation/hives/HiveLog.h"

namespace kvstation {

// As applyLogs, of usable logs. Applied are those that follow each other from the first one on that the hive does not
// have yet; a number that is left out or a hash that is wrong ends it.
std::vector<std::string> applyLogEntries(std::string& hive, const std::vector<const LogFile*>& logs);

}  // namespace kvstation
