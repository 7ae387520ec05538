// Declarations of the answers: sim_NAME has the type of the real NAME, so that either can stand in the other's place.
#pragma once

#ifndef SECURITY_WIN32
#define SECURITY_WIN32
#endif

#include "framework/Windows.h"
#include "framework/WindowsSockets.h"

#include <iphlpapi.h>
#include <lm.h>
#include <nb30.h>
#include <powrprof.h>
#include <security.h>

#include "companions/kvenv/kvenv.h"
#include "companions/kvnetapi/kvnetapi.h"
#include "companions/kvtswrp/KVTSWRP.h"
#include "companions/zrtrc/ZRtrc.h"
#include "framework/CRuntime.h"

#undef GetComputerName
#undef GetUserName

#ifdef _WIN32
using PhysicalAddressPlace = PVOID;
#else
using PhysicalAddressPlace = PULONG;  // Wine's declaration, where Windows has PVOID
#endif

extern "C" {

#define SIMWIN_CALL(library, name) decltype(::name) sim_##name;
#define SIMWIN_LOOKUP(library, name) decltype(::name) sim_##name;
#ifndef _WIN32
#define SIMWIN_SOCKET(library, name) decltype(::WS_##name) sim_##name;
#define SIMWIN_SOCKET_LOOKUP(library, name) decltype(::WS_##name) sim_##name;
#endif
#define SIMWIN_UNDECLARED(library, name)
#include "simwin/calls/Calls.inc"

ZRTRC_FORMAT decltype(::ZRTrace) sim_ZRTrace;

// Wine's native headers leave it to the C library's, whose size is another type.
int WINAPI sim_gethostname(char* name, int size);
// Citrix's session query: informationClass 10 is the client's name. TRUE gives a text that the caller would release
// with the interface's own free function.
BOOL WINAPI sim_WFQuerySessionInformationA(HANDLE server, DWORD session, int informationClass, LPSTR* buffer,
                                           DWORD* bytes);
// The product's VCD module's version number.
int sim_KVGetVCDVersion();
}
