#include "framework/WinApp.h"

#include "framework/ModuleState.h"
#include "framework/WindowsSockets.h"

CWinApp::CWinApp(const char* profileFile) noexcept : m_pszProfileFile(profileFile) {
    GetStaticModuleState().m_pApp = this;
}

bool CWinApp::InitInstance() {
    return true;
}

int CWinApp::ExitInstance() {
    return 0;
}

CString CWinApp::GetProfileString(const char* section, const char* entry) const {
    char text[4096] = {};
    GetPrivateProfileStringA(section, entry, "", text, sizeof text, m_pszProfileFile);
    return text;
}

CWinApp* GetApp() noexcept {
    return GetModuleState().m_pApp;
}

void StartSockets() {
    winsock::StartupData data;
    winsock::Startup(MAKEWORD(1, 1), data);
}
