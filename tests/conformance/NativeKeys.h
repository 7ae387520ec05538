// Keys of a real registry by the kernel's own calls, which take names with a NUL in them and data as they are.
#pragma once

#include <string>
#include <string_view>

#include "framework/Windows.h"
#include "tests/conformance/Arrangement.h"

namespace conformance {

// Names are bytes of code page 1252; the key vanishes with the session at the latest. Throws std::runtime_error.
HKEY createKey(HKEY parent, std::string_view name);
void setValue(HKEY key, const DescribedValue& value);
// Deletes the key with all below it; the handle stays open. False when something stays.
bool deleteTree(HKEY key);

}  // namespace conformance
