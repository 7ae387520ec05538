// Included before everything else in the sources of the libraries that format by msvcrt.dll: libstdc++'s headers ask
// for MinGW's own formatting, and <stdio.h> read before them settles it.
#pragma once

#include <stdio.h>  // NOLINT(modernize-deprecated-headers): <cstdio> is one of libstdc++'s headers
