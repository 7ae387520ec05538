#pragma once

#include "companions/zrtrc/ZRtrc.h"

// The component that every trace line of this module names.
inline constexpr char kTraceComponent[] = "KelVor - Station registration (client)";

// What the module does, and details of it. What the numbers mean belongs to the trace library.
inline constexpr int kTraceActions = 2;
inline constexpr int kTraceDetails = 6;
