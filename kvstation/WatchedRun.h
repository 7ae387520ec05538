// One collection with its platform calls.
#pragma once

#include <string>
#include <vector>

#include "kvstation/CallLog.h"
#include "kvstation/Record.h"

namespace kvstation {

struct WatchedRun {
    RecordBytes record{};
    std::vector<StepCall> calls;
};

// Of the station that the folder describes; of this computer (Windows) when `folder` is empty. Throws Failure.
WatchedRun watchRun(const std::string& folder);

}  // namespace kvstation
