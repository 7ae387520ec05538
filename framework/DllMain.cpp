// The entry point of a library that is built on the framework.
#include "framework/ModuleState.h"
#include "framework/WinApp.h"

// Puts no state in force: a thread may come or go while another one is in a call of the library.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    CModuleState& state = GetStaticModuleState();
    switch (reason) {
        case DLL_PROCESS_ATTACH:
            state.m_hInstance = instance;
            return state.m_pApp->InitInstance() ? TRUE : FALSE;
        case DLL_PROCESS_DETACH:
            state.m_pApp->ExitInstance();
            return TRUE;
        default:
            return TRUE;
    }
}
