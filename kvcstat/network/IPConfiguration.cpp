// The station's addresses and names: those of the client device in a remote session, whose server is kept apart.
#include "companions/kvtswrp/KVTSWRP.h"
#include "framework/WindowsSockets.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

// Where a client's name is set, in a session or not, the MAC is asked for only when the product says so; elsewhere
// always.
bool IsMACWanted() {
    const CStatGlobal global;
    CString wanted = "1";
    if (!global.GetEnvVar("CLIENTNAME").IsEmpty())
        wanted = global.GetEnvVar("KVGetClientMACAddress");
    return wanted == "1";
}

CString UnknownAddress() {
    CString unknown;
    unknown.LoadString(IDS_UNKNOWN_VALUE);
    return unknown;
}

}  // namespace

int CNetworkInformation::GetIPConfiguration() {
    const CStatGlobal global;
    const bool wantsMAC = IsMACWanted();
    m_cDomain = global.GetEnvVar("USERDOMAIN");
    if (global.IsRemoteSession())
        GetSessionAddresses(wantsMAC);
    else
        GetStationAddresses(wantsMAC);
    const int status = ReadAdapters();
    GetWorkgroup();
    return status;
}

void CNetworkInformation::GetStationAddresses(bool wantsMAC) {
    const CStatGlobal global;
    m_cIPAddress = global.GetEnvVar("KVIP");
    ResolveHostName();
    if (m_cIPAddress.IsEmpty()) {
        m_cMACAddress = wantsMAC ? GetNetbiosMACAddress() : UnknownAddress();
        return;
    }
    m_cDnsName = GetDnsName(m_cIPAddress, winsock::kIPv4);
    m_cMACAddress = wantsMAC ? GetARPMACAddress(m_cIPAddress) : UnknownAddress();
}

void CNetworkInformation::GetSessionAddresses(bool wantsMAC) {
    m_cServerIPAddress = GetHostAddress(winsock::kIPv4);
    m_cServerName = GetLocalComputerName();
    m_cIPAddress = GetClientIPAddress(winsock::kIPv4);
    m_nSessionID = GetSessionID();
    if (m_cIPAddress.IsEmpty()) {
        m_cServerMACAddress = GetNetbiosMACAddress();
        return;
    }
    m_cServerMACAddress = GetARPMACAddress(m_cServerIPAddress);
    m_cMACAddress = wantsMAC ? GetARPMACAddress(m_cIPAddress) : UnknownAddress();
    // The member keeps all of the client's addresses; only the question for a name is about the first.
    m_cDnsName = GetDnsName(FirstAddress(m_cIPAddress), winsock::kIPv4);
}

CString CNetworkInformation::GetClientIPAddress(int) {
    const CStatGlobal global;
    if (!global.IsRemoteSession())
        return {};
    char addresses[200] = {};
    ZRTSQueryIPAddress(addresses, sizeof addresses);
    addresses[sizeof addresses - 1] = '\0';
    return addresses;
}

int CNetworkInformation::GetSessionID() {
    const CStatGlobal global;
    return global.IsRemoteSession() ? ZRTSQuerySessionID() : -1;
}

CString CNetworkInformation::FirstAddress(const CString& addresses) const {
    const int separator = addresses.Find(';');
    return separator > 0 ? addresses.Left(separator) : addresses;
}

int CNetworkInformation::ExportNetworkEnvironment() {
    const CStatGlobal global;
    if (!m_cIPAddress.IsEmpty())
        global.SetEnvVar("KVIP", FirstAddress(m_cIPAddress));
    if (!m_cDnsName.IsEmpty())
        global.SetEnvVar("KVDnsName", m_cDnsName);
    return 0;
}
