#pragma once

#include "framework/WinApp.h"

// The module's life: the terminal-services wrapper and Windows Sockets run from load to unload.
class CkvcstatApp : public CWinApp {
  public:
    CkvcstatApp() noexcept : CWinApp("kvcstat64.ini") {}
    ~CkvcstatApp() override = default;

    bool InitInstance() override;
    int ExitInstance() override;
};
