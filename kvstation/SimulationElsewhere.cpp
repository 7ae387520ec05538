#include "kvstation/Errors.h"
#include "kvstation/Simulation.h"

namespace kvstation {

Report simulateStation(const std::string&) {
    throw Failure("the Windows program does not simulate stations yet; the Linux program does");
}

}  // namespace kvstation
