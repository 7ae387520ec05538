// One line for a crash under a test: which station ran, and where it happened.
#pragma once

#include <string>

namespace kvtest {

// From now on an exception that nobody handles ends the process with one line on standard error:
// "windows-xp-console: exception 0xC0000005 at kvcstat64.dll+0x1A2B, access to 0x0000000000345000". Empty: no station.
void NameStationInCrashes(const std::string& station);

}  // namespace kvtest
