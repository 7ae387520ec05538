#include "kvcstat/user/UserInformation.h"

#include <memory>

#include "companions/kvnetapi/kvnetapi.h"
#include "framework/Windows.h"
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/common/Trace.h"

#ifndef SECURITY_WIN32
#define SECURITY_WIN32  // security.h: declarations for programs, not for drivers
#endif
#include <security.h>

namespace {

// First character of "KVUserType"; any other one, or none, asks for the Windows account.
constexpr char kNetworkUser = '1';
constexpr char kDirectoryUser = '2';

using GetUserNameExFunction = BOOLEAN(WINAPI*)(EXTENDED_NAME_FORMAT format, char* name, ULONG* size);
GetUserNameExFunction g_getUserNameEx = nullptr;  // of the last ReadDisplayedName

bool IsPrincipalType(const CString& nameType) {
    return nameType.CompareNoCase("nameuserprincipal") == 0;
}

// The characters that the form's name takes with its terminator; 0 when there is no such name.
ULONG AskNameSize(EXTENDED_NAME_FORMAT format) {
    ULONG size = 0;
    GetUserNameExA(format, nullptr, &size);
    return size;
}

// Asks for the principal name such as "jdoe@lab.example", and the network account when there is none: even for a
// station that asks for the Windows account.
bool GetPrincipalName(CString& cUserName) {
    ULONG size = AskNameSize(NameUserPrincipal);
    const std::unique_ptr<char[]> name(new char[std::size_t{size} + 1]());
    if (GetUserNameExA(NameUserPrincipal, name.get(), &size) == FALSE) {
        ZRTrace(kTraceActions, kTraceComponent, "GetUserNameEx='%s' Error=%d\n", "no",
                static_cast<int>(GetLastError()));
        return KVGetUserName(cUserName) != 0;
    }
    cUserName = name.get();
    ZRTrace(kTraceActions, kTraceComponent, "GetUserNameEx='%s'\n", "yes");
    ZRTrace(kTraceActions, kTraceComponent, "cUserName='%s'\n", static_cast<const char*>(cUserName));
    return true;
}

}  // namespace

int CUserInformation::Collect(CString& cUserName) {
    const CStatGlobal global;
    cUserName = global.GetEnvVar("KVUser");
    ZRTrace(kTraceActions, kTraceComponent, "KVUser='%s'\n", static_cast<const char*>(cUserName));
    if (cUserName.IsEmpty())
        ChooseUserName(cUserName);

    m_cUserName = cUserName;
    ReadWinUser();
    ReadDisplayedName();
    ZRTrace(kTraceActions, kTraceComponent, "m_cUserName='%s'\n", static_cast<const char*>(m_cUserName));
    ZRTrace(kTraceActions, kTraceComponent, "m_cWinUser='%s'\n", static_cast<const char*>(m_cWinUser));
    ZRTrace(kTraceActions, kTraceComponent, "m_cUserDisplayedName='%s'\n",
            static_cast<const char*>(m_cUserDisplayedName));
    return 0;
}

void CUserInformation::ChooseUserName(CString& cUserName) {
    // The Windows account is the last resort of every user type, also of the one that has just asked for it.
    if (!AskUserName(cUserName) && GetWindowsUser(cUserName) != 0)
        cUserName.LoadString(IDS_UNKNOWN_NAME);
    cUserName.MakeUpper();
}

bool CUserInformation::AskUserName(CString& cUserName) {
    const CStatGlobal global;
    const CString userType = global.GetEnvVar("KVUserType");
    const CString nameType = global.GetEnvVar("KVUSERNAMETYPE");
    ZRTrace(kTraceActions, kTraceComponent, "KVUSERNAMETYPE='%s'\n", static_cast<const char*>(nameType));
    switch (userType[0]) {
        case kNetworkUser:
            ZRTrace(kTraceActions, kTraceComponent, "KVUSERTYPE_WINDOWS_NET");
            return IsPrincipalType(nameType) ? GetPrincipalName(cUserName) : KVGetUserName(cUserName) != 0;
        case kDirectoryUser:
            return KVNDSWhoAmI("", cUserName) != 0;
        default:
            ZRTrace(kTraceActions, kTraceComponent, "KVUSERTYPE_WINDOWS");
            return IsPrincipalType(nameType) ? GetPrincipalName(cUserName) : GetWindowsUser(cUserName) == 0;
    }
}

int CUserInformation::ReadWinUser() {
    const CStatGlobal global;
    const bool principal = IsPrincipalType(global.GetEnvVar("KVUSERNAMETYPE"));
    // The account name's size serves the principal name too: one that is longer counts as missing, and the product
    // has always registered such users without it.
    ULONG size = AskNameSize(NameSamCompatible);
    const std::unique_ptr<char[]> name(new char[size]());
    if (GetUserNameExA(principal ? NameUserPrincipal : NameSamCompatible, name.get(), &size) == FALSE) {
        ZRTrace(kTraceDetails, kTraceComponent, "GetUserNameEx failed. Error %d\n", static_cast<int>(GetLastError()));
        return -1;
    }
    m_cWinUser = name.get();
    m_cWinUser.MakeUpper();  // cppcheck-suppress danglingLifetime ; the string copied the name
    return 0;
}

int CUserInformation::ReadDisplayedName() {
    const UniqueLibrary library(LoadLibraryA("Secur32.dll"));
    if (library == nullptr)
        return -1;
    g_getUserNameEx = FindFunction<GetUserNameExFunction>(library.get(), "GetUserNameExA");
    char name[256] = {};
    ULONG size = sizeof name;
    if (g_getUserNameEx != nullptr && g_getUserNameEx(NameDisplay, name, &size) != FALSE)
        m_cUserDisplayedName = name;
    return -1;
}

int CUserInformation::GetWindowsUser(CString& cUserName) {
    char name[257] = {};
    DWORD size = sizeof name;
    const bool found = GetUserNameA(name, &size) != FALSE;
    if (found) {
        cUserName = name;
        cUserName.MakeUpper();
    }
    m_cUserName = cUserName;
    return found ? 0 : -1;
}

int CUserInformation::PublishUser() {
    const CStatGlobal global;
    return global.SetEnvVar("KVUser", m_cUserName) != 0 ? 0 : -1;
}
