// Which of Windows' hives a hive is, whatever its file's name.
#pragma once

#include <string_view>

#include "kvstation/hives/Hive.h"

namespace kvstation {

// "SYSTEM", "SOFTWARE", "NTUSER.DAT", "UsrClass.dat", "SAM", "SECURITY", "COMPONENTS", "BCD", "SYSTEM.DAT" or
// "USER.DAT", by its root keys; empty when they do not tell.
std::string_view kindOf(Hive& hive);

}  // namespace kvstation
