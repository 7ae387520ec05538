// The file version in a version resource.
#pragma once

#include <cstddef>

#include "framework/Windows.h"

// What of the fixed information must be there for it: a resource may hold no more. In bytes.
inline constexpr std::size_t kFileVersionSize = offsetof(VS_FIXEDFILEINFO, dwProductVersionMS);
