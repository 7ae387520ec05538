#include "kvstation/capture/RunningState.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/platform/Errors.h"

namespace kvstation {

std::unique_ptr<LocalState> runningState() {
    throw Failure(kNeedsWindows);
}

}  // namespace kvstation
