// Windows' own declarations, the same for the MinGW build and for the native build against Wine's headers.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif

#ifdef _WIN32
#include <winsock2.h>
#else
// glibc has sockaddr, timeval and the like too: Winsock's get the prefix WS_.
#define USE_WS_PREFIX
#endif

#include <windows.h>

// Operations of ours have the plain names; the narrow Windows calls are made by their A names.
#undef GetComputerName
#undef GetProfileString
#undef GetUserName
#undef LoadString
