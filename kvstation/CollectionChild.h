// The child's side of a collection. Windows only.
#pragma once

namespace kvstation {

// The verb by which the tool starts itself, with the handle of the shared memory as its argument.
inline constexpr const char* kCollectForParent = "collect-for-parent";

}  // namespace kvstation
