// The version of Windows as a caller without a manifest is told it. Windows only.
#pragma once

#include "simwin/machine/Relay.h"

namespace kvstation {

// Windows reads the manifest of the program, which here is the tool's, and none of a library or of an activation
// context that is made later. So what asks for the version is answered in Windows' place; where that would answer the
// same, nothing is.
void answerAsCaller(simwin::Relay& relay);

}  // namespace kvstation
