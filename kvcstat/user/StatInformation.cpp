#include "kvcstat/user/StatInformation.h"

#include <cstdlib>
#include <iterator>

#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

// What "KVStationType" asks for, by its numbers, and what is tried then, in this order. The client name (0, so that it
// also fills the rows) is everyone's last choice, and the only one of any other number.
enum StationType { kClientName = 0, kDnsName = 1, kIPAddress = 2, kMACAddress = 3 };
struct StationName {
    CString (*of)(const CNetworkInformation& network);
    StationType tried[4];
};
constexpr StationName kStationNames[] = {
    {[](const CNetworkInformation& network) { return network.m_cClientName; }, {kClientName}},
    {[](const CNetworkInformation& network) { return network.m_cDnsName; },
     {kDnsName, kIPAddress, kMACAddress, kClientName}},
    {[](const CNetworkInformation& network) { return network.FirstAddress(network.m_cIPAddress); },
     {kIPAddress, kMACAddress, kClientName}},
    {[](const CNetworkInformation& network) { return network.m_cMACAddress; }, {kMACAddress, kIPAddress, kClientName}},
};

constexpr int kNoName = -1;

const StationName& StationNameOf(int asked) {
    const bool isKnown = static_cast<std::size_t>(asked) < std::size(kStationNames);
    return kStationNames[isKnown ? asked : int{kClientName}];
}

using GetVCDVersionFunction = int (*)();
GetVCDVersionFunction g_getVCDVersion = nullptr;  // of the last ReadVCDVersion

}  // namespace

int CStatInformation::Collect(CNetworkInformation& network) {
    const CStatGlobal global;
    const CString type = global.GetEnvVar("KVStationType");
    network.m_nStationType = std::atoi(type);
    SetSessionFlags();

    // The overrides stay in the network collector and so reach the record's own fields too.
    const CString clientName = global.GetEnvVar("KVRDPClientName");
    const CString clientIP = global.GetEnvVar("KVRDPClientIP");
    if (!clientName.IsEmpty())
        network.m_cClientName = clientName;
    if (!clientIP.IsEmpty())
        network.m_cIPAddress = clientIP;

    const StationName& asked = StationNameOf(network.m_nStationType);
    network.m_nStationType = kNoName;
    m_cStation.LoadString(IDS_UNKNOWN_NAME);
    for (const StationType tried : asked.tried) {
        const CString name = kStationNames[tried].of(network);
        if (!name.IsEmpty()) {
            network.m_nStationType = tried;
            m_cStation = name;
            break;
        }
    }
    m_cStation.MakeUpper();
    return 0;
}

void CStatInformation::SetSessionFlags() {
    const CStatGlobal global;
    m_bWinFrame = global.IsWinFrame() ? 1 : 0;
    m_bMetaFrame = global.IsMetaFrame() ? 1 : 0;
    m_bTSClientSession = global.IsTSClientSession() ? 1 : 0;
}

int CStatInformation::MarkSession(const CNetworkInformation& network) {
    const CStatGlobal global;
    // The mark is "#1" whatever the session's number is: stations are registered under it.
    if (global.IsRemoteSession() && network.m_nSessionID != 0)
        m_cStation += "#1";
    m_cStation.MakeUpper();
    return 0;
}

void CStatInformation::ReadVCDVersion() {
    const UniqueLibrary library(LoadLibraryA("KVVCD32.dll"));
    if (library == nullptr)
        return;
    g_getVCDVersion = FindFunction<GetVCDVersionFunction>(library.get(), "KVGetVCDVersion");
    if (g_getVCDVersion != nullptr)
        m_cVCDVersion.Format("%d", g_getVCDVersion());
}

int CStatInformation::Publish() {
    const CStatGlobal global;
    // Any "#" of the name splits it, not only the mark of MarkSession.
    const int mark = global.IsRemoteSession() ? m_cStation.Find('#') : -1;
    if (mark >= 0) {
        global.SetEnvVar("KVStation", m_cStation.Left(mark));
        global.SetEnvVar("KVTSSessionNumber", m_cStation.Mid(mark + 1));
    } else {
        global.SetEnvVar("KVStation", m_cStation);
    }
    global.SetEnvVar("KVVCDVersion", m_cVCDVersion);
    return 0;
}
