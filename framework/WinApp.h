#pragma once

#include "framework/Object.h"
#include "framework/String.h"

// The application object of a module: one static instance, constructed when the library is loaded. The library's
// entry point calls InitInstance after the load and ExitInstance before the unload.
class CWinApp : public CObject {
  public:
    // `profileFile`: the module's profile, a file name in the Windows folder such as "module.ini".
    explicit CWinApp(const char* profileFile) noexcept;

    // True when the module may be used; false makes the load fail.
    virtual bool InitInstance();
    // The module's exit code.
    virtual int ExitInstance();

    // Text of `entry` in `section` of the profile (GetPrivateProfileStringA), at most 4095 characters; empty when
    // there is none.
    CString GetProfileString(const char* section, const char* entry) const;

  private:
    const char* m_pszProfileFile;
};

// The application object of the module state in force.
CWinApp* GetApp() noexcept;

// Starts Windows Sockets (WSAStartup, version 1.1) for the process; where it does not start, its calls fail. There is
// no counterpart: the count stays raised at unload, because Windows Sockets must not be stopped from a library's entry
// point.
void StartSockets();
