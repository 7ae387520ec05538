// The functions under test by one name each in both builds.
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

#include "framework/CRuntime.h"
#include "kvcstat/common/Handles.h"

#undef GetComputerName
#undef GetUserName

#ifdef _WIN32
#define KV_SOCKET_FUNCTION(name) ::name
#else
#define KV_SOCKET_FUNCTION(name) ::WS_##name
#endif

namespace conformance {

// A library for this object's life, and its functions. The companions and what the module looks up are asked for so,
// because not every computer has them.
class Library {
  public:
    explicit Library(const char* name) : m_handle(LoadLibraryA(name)) {}

    HMODULE handle() const { return m_handle.get(); }

    // Null when there is none.
    template <class Function>
    Function find(const char* name) const {
        return m_handle != nullptr ? FindFunction<Function>(m_handle.get(), name) : nullptr;
    }
    template <class Function>
    Function find(unsigned short ordinal) const {
        return find<Function>(reinterpret_cast<const char*>(static_cast<ULONG_PTR>(ordinal)));
    }

  private:
    UniqueLibrary m_handle;
};

}  // namespace conformance
