// The child's side of a collection. Windows only.
#pragma once

#include <string>
#include <vector>

#include "kvstation/SharedCollection.h"

namespace kvstation {

// The verb by which the tool starts itself to collect a record, with the handle of the shared memory as its argument.
inline constexpr const char* kCollectForParent = "collect-for-parent";

// The word by which the tool starts itself to run another verb: behind it come that handle and the verb's own words.
inline constexpr const char* kRunForParent = "run-for-parent";

// Runs the verb of those words, which gives its result out itself. The exit status is the verb's.
int runForParent(const std::string& memory, const std::vector<std::string>& words);

// The memory that this process shares with its parent; null when it is no child.
SharedCollection* parentsMemory();

}  // namespace kvstation
