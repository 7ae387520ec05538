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
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() {
        if (m_handle != nullptr)
            FreeLibrary(m_handle);
    }

    HMODULE handle() const { return m_handle; }

    // Null when there is none.
    template <class Function>
    Function find(const char* name) const {
        return m_handle != nullptr
                   ? reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(m_handle, name)))
                   : nullptr;
    }
    template <class Function>
    Function find(unsigned short ordinal) const {
        return find<Function>(reinterpret_cast<const char*>(static_cast<ULONG_PTR>(ordinal)));
    }

  private:
    HMODULE m_handle;
};

}  // namespace conformance
