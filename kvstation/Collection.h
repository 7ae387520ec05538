// One collection by the real library. It runs in a child process of the tool, so that a crash or a hang inside the
// library, or inside what it calls, costs a line and not the terminal.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "kvstation/Record.h"

namespace kvstation {

// Collects this station's record with the library beside the tool. Throws Failure, in one line that names the step
// and the last platform call. Where `times` is not null it receives the text of CallTimes.h. Needs Windows and throws
// elsewhere.
RecordBytes collectHere(std::chrono::seconds limit, std::string* times);

// Runs a verb that collects on this computer in such a child process, which gives the result out itself. `arguments`
// are those of the tool. The verb's exit status; none where it is to run here: in that child, and where there is no
// Windows. Throws Failure as above.
std::optional<int> runInChild(const std::vector<std::string>& arguments, std::chrono::seconds limit);

}  // namespace kvstation
