#pragma once

#include "framework/String.h"
#include "framework/Windows.h"

// What follows an Intel processor's name, by its level: the stepping ("-D0") of an 80386 or 80486, model and stepping
// ("(5.0)") of a Pentium, nothing for all others. In `revision` the lower 16 bits are the model, or 255 when model and
// stepping are in the upper ones.
CString RevisionSuffix(DWORD level, DWORD revision);
