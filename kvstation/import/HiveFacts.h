// What a Windows tells of itself outside of the registry, but takes from the registry or writes down there.
#pragma once

#include <string>
#include <vector>

#include "kvstation/import/HiveRegistry.h"
#include "simwin/station/Station.h"

namespace kvstation {

struct HiveFacts {
    simwin::Station station;  // with an empty registry
    bool knowsOemCodePage = false;
    bool isServer = false;
    std::vector<std::string> lost;  // members of the version, by their paths, that damage may have taken
};

// Version, code pages, computer name, host name, processors and environment, as far as the hives tell them.
//
// The version is the true one, which a program with a manifest is told. The environment is that of a process of the
// user: the machine's variables, replaced by the user's of the same name. A variable that is made of another one which
// only a logon sets, such as USERNAME, is left undescribed.
HiveFacts factsOf(HiveRegistry& registry);

}  // namespace kvstation
