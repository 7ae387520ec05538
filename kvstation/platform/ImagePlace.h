// Where in a loaded library an address lies. It is read in the images themselves: Windows' own answers take the
// loader's lock, which a thread that hangs may hold. Windows only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kvstation {

struct ImagePlace {
    std::string_view image;  // as the image names itself, such as "kvcstat64.dll"; empty: it is in no library
    std::uintptr_t offset;   // from the image's start; of no library: the address
};

ImagePlace placeOf(const void* address);

// The innermost caller that is neither this tool nor what a process is ended by: msvcrt, kernel32 and their like. Null
// when there is none.
const void* callerOfEnding();

}  // namespace kvstation
