#pragma once

#include "framework/WinApp.h"

// The module's life: the terminal-services wrapper runs from load to unload, and Windows Sockets are started at the
// load.
class CkvcstatApp : public CWinApp {
  public:
    CkvcstatApp() noexcept : CWinApp("kvcstat64.ini") {}
    ~CkvcstatApp() override = default;

    bool InitInstance() override;
    int ExitInstance() override;
};
