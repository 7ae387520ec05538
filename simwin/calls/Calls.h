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

#ifdef _WIN32
#define SIMWIN_SOCKET(library, name) decltype(::name) sim_##name;
#define SIMWIN_SOCKET_TYPE(name) decltype(::name)
#else
#define SIMWIN_SOCKET(library, name) decltype(::WS_##name) sim_##name;
#define SIMWIN_SOCKET_TYPE(name) decltype(::WS_##name)
#endif
#define SIMWIN_CALL(library, name) decltype(::name) sim_##name;
#include "simwin/calls/Calls.inc"

ZRTRC_FORMAT decltype(::ZRTrace) sim_ZRTrace;

decltype(::VerSetConditionMask) sim_VerSetConditionMask;
decltype(::VerifyVersionInfoA) sim_VerifyVersionInfoA;
decltype(::GetDiskFreeSpaceExA) sim_GetDiskFreeSpaceExA;
decltype(::NetWkstaGetInfo) sim_NetWkstaGetInfo;
decltype(::NetApiBufferFree) sim_NetApiBufferFree;
decltype(::CallNtPowerInformation) sim_CallNtPowerInformation;
int WINAPI sim_gethostname(char* name, int size);
SIMWIN_SOCKET_TYPE(gethostbyname) sim_gethostbyname;
SIMWIN_SOCKET_TYPE(gethostbyaddr) sim_gethostbyaddr;

// Citrix's session query: informationClass 10 is the client's name. TRUE gives a text that the caller would release
// with the interface's own free function.
BOOL WINAPI sim_WFQuerySessionInformationA(HANDLE server, DWORD session, int informationClass, LPSTR* buffer,
                                           DWORD* bytes);
// The product's VCD module's version number.
int sim_KVGetVCDVersion();
}

#undef SIMWIN_SOCKET_TYPE
