#pragma once

#include "framework/Windows.h"

class CWinApp;

// What a module keeps for as long as it is loaded: its instance, whose resources hold the string table, and its
// application object.
struct CModuleState {
    HINSTANCE m_hInstance = nullptr;
    CWinApp* m_pApp = nullptr;
};

// The state of the module that this code is linked into.
CModuleState& GetStaticModuleState() noexcept;

// The state that is in force: the module's own unless a scope says otherwise.
CModuleState& GetModuleState() noexcept;

// Puts a module's state in force for the scope's life; the one before returns on every way out.
class CModuleStateScope {
  public:
    explicit CModuleStateScope(CModuleState& state) noexcept;
    CModuleStateScope(const CModuleStateScope&) = delete;
    CModuleStateScope& operator=(const CModuleStateScope&) = delete;
    ~CModuleStateScope();

  private:
    CModuleState* m_pPrevious;
};
