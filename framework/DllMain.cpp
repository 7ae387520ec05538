// The entry point of a library that is built on the framework.
#include "framework/ModuleState.h"
#include "framework/WinApp.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    const CModuleStateScope scope(GetStaticModuleState());
    switch (reason) {
        case DLL_PROCESS_ATTACH:
            GetStaticModuleState().m_hInstance = instance;
            return GetApp()->InitInstance() ? TRUE : FALSE;
        case DLL_PROCESS_DETACH:
            GetApp()->ExitInstance();
            return TRUE;
        default:
            return TRUE;
    }
}
