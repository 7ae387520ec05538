// Which Windows this is, and whether the code runs in a client session on a terminal server.
#include <cstring>

#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"

namespace {

constexpr DWORD kTopBit = 0x80000000;  // of GetVersion: Windows 9x

bool ReadVersion(OSVERSIONINFOA& version) {
    version.dwOSVersionInfoSize = sizeof version;
    return GetVersionExA(&version) != FALSE;
}

UniqueRegKey OpenMachineKey(const char* subKey, REGSAM access) {
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_LOCAL_MACHINE, subKey, 0, access, &key);
    return UniqueRegKey(key);
}

// Both functions are looked up, because the oldest systems have neither.
bool IsTerminalSuite() {
    using VerSetConditionMaskFunction = ULONGLONG(WINAPI*)(ULONGLONG mask, DWORD type, BYTE condition);
    using VerifyVersionInfoFunction = BOOL(WINAPI*)(OSVERSIONINFOEXA * version, DWORD type, DWORDLONG mask);

    const HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    if (ntdll == nullptr)
        return false;
    const auto setCondition = FindFunction<VerSetConditionMaskFunction>(ntdll, "VerSetConditionMask");
    if (setCondition == nullptr)
        return false;
    const DWORDLONG mask = setCondition(0, VER_SUITENAME, VER_AND);
    const HMODULE kernel = GetModuleHandleA("KERNEL32.DLL");
    if (kernel == nullptr)
        return false;
    const auto verify = FindFunction<VerifyVersionInfoFunction>(kernel, "VerifyVersionInfoA");
    if (verify == nullptr)
        return false;
    OSVERSIONINFOEXA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    version.wSuiteMask = VER_SUITE_TERMINAL;
    return verify(&version, VER_SUITENAME, mask) != FALSE;
}

}  // namespace

DWORD CStatGlobal::GetPlatformId() const {
    OSVERSIONINFOA version = {};
    return ReadVersion(version) ? version.dwPlatformId : 0;
}

bool CStatGlobal::IsWindowsNT5() const {
    OSVERSIONINFOA version = {};
    return ReadVersion(version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT && version.dwMajorVersion == 5;
}

bool CStatGlobal::IsTerminalServer() const {
    const DWORD version = GetVersion();
    if ((version & kTopBit) != 0)
        return false;
    if (LOBYTE(version) <= 4)
        return IsProductSuite("Terminal Server");
    return IsTerminalSuite();
}

bool CStatGlobal::IsProductSuite(const char* suite) const {
    const UniqueRegKey key = OpenMachineKey("System\\CurrentControlSet\\Control\\ProductOptions", KEY_READ);
    if (key == nullptr)
        return false;
    DWORD size = 0;
    if (RegQueryValueExA(key.get(), "ProductSuite", nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS || size == 0)
        return false;
    const UniqueLocalBlock block(LocalAlloc(LPTR, std::size_t{size} + kRegDataPadding));
    auto* suites = static_cast<BYTE*>(block.get());
    DWORD type = REG_NONE;
    if (suites == nullptr ||
        RegQueryValueExA(key.get(), "ProductSuite", nullptr, &type, suites, &size) != ERROR_SUCCESS ||
        type != REG_MULTI_SZ)
        return false;
    for (const BYTE* item = suites; *item != 0; item += std::strlen(reinterpret_cast<const char*>(item)) + 1) {
        if (MbsCmp(item, reinterpret_cast<const BYTE*>(suite)) == 0)
            return true;
    }
    return false;
}

bool CStatGlobal::IsCitrixProduct(const char* word) const {
    if (GetEnvVar("CLIENTNAME").IsEmpty())
        return false;
    const UniqueRegKey key = OpenMachineKey("SYSTEM\\CurrentControlSet\\Control\\Citrix", KEY_QUERY_VALUE);
    char product[259] = {};
    return key != nullptr && GetRegStringStrict(key.get(), "ProductName", product, sizeof product) == ERROR_SUCCESS &&
           StrStr(product, word) != nullptr;
}

bool CStatGlobal::IsWinFrame() const {
    return IsCitrixProduct("WinFrame");
}

bool CStatGlobal::IsMetaFrame() const {
    return IsCitrixProduct("MetaFrame");
}

bool CStatGlobal::IsTSClientSession() const {
    return !GetEnvVar("CLIENTNAME").IsEmpty() && IsTerminalServer();
}

bool CStatGlobal::IsRemoteSession() const {
    return IsMetaFrame() || IsTSClientSession() || IsWinFrame();
}
