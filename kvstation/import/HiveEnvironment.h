// The environment that Windows makes for a process of the user.
#pragma once

#include <vector>

#include "kvstation/import/HiveRegistry.h"
#include "simwin/station/Station.h"

namespace kvstation {

// Of Windows NT SystemRoot, SystemDrive, the machine's variables and the user's, which replace those of the same name;
// of Windows 9x windir and those of the session manager's Environment. What a logon sets is in no hive. Of REG_SZ first
// and of REG_EXPAND_SZ then, as Windows sets them, so that these can be made of those. One that is made of an unknown
// variable is unknown itself.
std::vector<simwin::Variable> environmentOf(HiveRegistry& registry);

}  // namespace kvstation
