#pragma once

#include "simwin/station/Station.h"

namespace simwin {

// A machine on which each of the calls below succeeds.
Station describedForEveryCall();

// Makes every call at least once and closes what it opened, but for a process, its token and Citrix's buffer.
void makeEveryCall();

// The part of it that reads the registry.
void makeRegistryCalls();

}  // namespace simwin
