// Versions of the installed remote-desktop clients.
#include <memory>

#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

constexpr char kICAProgram[] = "wfica32.exe";

// The default value of a key of HKEY_CLASSES_ROOT as it stands, whatever its type, cut to 259 characters.
CString ReadDefaultValue(const char* subKey) {
    HKEY opened = nullptr;
    RegOpenKeyA(HKEY_CLASSES_ROOT, subKey, &opened);
    const UniqueRegKey key(opened);
    DWORD size = 0;
    if (key == nullptr || RegQueryValueExA(key.get(), "", nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return {};
    const std::unique_ptr<BYTE[]> data(new BYTE[std::size_t{size} + 1]());
    if (RegQueryValueExA(key.get(), "", nullptr, nullptr, data.get(), &size) != ERROR_SUCCESS)
        return {};
    return CString(reinterpret_cast<const char*>(data.get())).Left(259);
}

// The program that an open command starts when it is the ICA client: the quoted or bare path in front of the first
// argument. Empty when the command names another program.
CString FindICAProgram(CString command) {
    command.MakeLower();
    const int program = command.Find(kICAProgram);
    if (program < 0)
        return {};
    CString folder = command.Left(program);
    folder = folder.Mid(folder.Find('"') + 1);
    return folder + kICAProgram;
}

}  // namespace

void CNetworkInformation::GetICAClientVersion() {
    const CStatGlobal global;
    const CString programId = ReadDefaultValue(".ica");
    if (programId.IsEmpty())
        return;
    const CString command = ReadDefaultValue(programId + "\\shell\\open\\command");
    const CString program = FindICAProgram(command);
    if (program.IsEmpty())
        return;
    CString longPath;
    GetLongPath(program, longPath);
    m_cICAClientVersion = global.GetFileVersion(longPath);
}

void CNetworkInformation::GetRDPClientVersion() {
    const CStatGlobal global;
    char folder[260] = {};
    GetEnvironmentVariableA("systemRoot", folder, sizeof folder);
    folder[sizeof folder - 1] = '\0';
    m_cRDPClientVersion = global.GetFileVersion(CString(folder) + "\\system32\\mstscax.dll");
}
