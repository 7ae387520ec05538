// A record as one self-contained page without scripts.
#pragma once

#include <string>

#include "kvstation/report/Report.h"

namespace kvstation {

std::string htmlView(const Report& report);

}  // namespace kvstation
