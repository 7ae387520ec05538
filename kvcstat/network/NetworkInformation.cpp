#include "kvcstat/network/NetworkInformation.h"

#include "kvcstat/common/StatGlobal.h"

int CNetworkInformation::GetNetworkInformation() {
    const CStatGlobal global;
    GetIPConfiguration();
    GetComputerName();
    GetNetworkProviders();
    GetBrowsers();
    GetNetworkAdapters();
    const int status = GetMailClients();
    GetICAClientVersion();
    GetRDPClientVersion();
    m_cDomain = GetDomainName();

    if (global.IsWinFrame() || global.IsMetaFrame()) {
        GetCitrixProduct();
        GetTSVariables();
    } else if (global.IsTSClientSession()) {
        GetTSProduct();
        GetTSVariables();
    }
    return status;
}
