// What collections left open on a simulated machine, against what they are meant to leave.
#pragma once

#include <string>
#include <vector>

#include "simwin/machine/Machine.h"

namespace kvtest {

// Each of the machine's collections may leave one process handle, one token handle and one text of the Citrix
// interface. One line for everything beyond that, and for each wrong use of a handle.
std::vector<std::string> unexpectedLeftovers(const simwin::Machine& machine, std::size_t collections = 1);

}  // namespace kvtest
