// The terminal-server product that serves the session.
#include <cstdlib>

#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

// A Citrix server of version 1.70 or later knows its session's client. "1.8" is version 1.8 and not 1.80.
bool KnowsClient(const CString& version) {
    char* end = nullptr;
    const long major = std::strtol(version, &end, 10);
    return major > 1 || (major == 1 && *end == '.' && std::strtol(end + 1, nullptr, 10) >= 70);
}

}  // namespace

int CNetworkInformation::GetCitrixProduct() {
    const CStatGlobal global;
    const char* const citrix = "SYSTEM\\CurrentControlSet\\Control\\Citrix";
    m_cTSClientName = global.GetEnvVar("CLIENTNAME");
    CString version;
    global.GetRegString(HKEY_LOCAL_MACHINE, citrix, "ProductName", m_cTSProduct);
    global.GetRegString(HKEY_LOCAL_MACHINE, citrix, "ProductVersion", version);
    global.AppendString(m_cTSProduct, version, " ");
    if (KnowsClient(version))
        GetDomainInformation();
    return -1;
}

int CNetworkInformation::GetTSProduct() {
    const CStatGlobal global;
    // Unlike the Citrix way this one upper-cases the client's name.
    m_cTSClientName = global.GetEnvVar("CLIENTNAME");
    m_cTSClientName.MakeUpper();
    ReadTSVersion();
    m_cTSClientName = global.GetEnvVar("CLIENTNAME");
    m_cTSClientName.MakeUpper();
    return GetDomainInformation();
}

void CNetworkInformation::ReadTSVersion() {
    const CStatGlobal global;
    HKEY opened = nullptr;
    RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Terminal Server", 0, KEY_READ, &opened);
    const UniqueRegKey server(opened);
    if (server == nullptr)
        return;
    m_cTSVersion.LoadString(IDS_TERMINAL_SERVER);
    char text[260] = {};
    if (global.GetRegStringStrict(server.get(), "ProductName", text, sizeof text) != ERROR_SUCCESS)
        return;
    m_cTSVersion = text;
    if (global.GetRegStringStrict(server.get(), "ProductVersion", text, sizeof text) == ERROR_SUCCESS)
        global.AppendString(m_cTSVersion, text, " ");
}

void CNetworkInformation::GetTSVariables() {
    const CStatGlobal global;
    m_cTSProtocol = global.GetEnvVar("KVTSProtocol");
    m_cTSBuildNo = global.GetEnvVar("KVTSBuildNo");
    m_cTSProductID = global.GetEnvVar("KVTSProductID");
}
