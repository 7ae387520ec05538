#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// The station's network: names, addresses, MAC, adapters, providers, domain; and the software that clients talk to:
// terminal-server product, remote clients, browsers, mail clients. One source file for each concern.
//
// Members are only assigned or appended to: one object serves one collection. Lists are joined with ";". Operations
// return 0 for success and -1 otherwise unless they say more; nobody acts on the results.
class CNetworkInformation : public CObject {
  public:
    ~CNetworkInformation() override = default;

    // The whole collection, in its fixed order. Status of the mail step.
    int GetNetworkInformation();

    // --- Names (ComputerName.cpp)
    int GetComputerName();
    CString GetLocalComputerName();

    // --- IP configuration (IPConfiguration.cpp, IPAdapters.cpp, HostName.cpp)
    int GetIPConfiguration();
    CString GetHostAddress(int family);
    CString GetClientIPAddress(int family);
    int GetSessionID();
    CString GetDnsName(const char* ip, int family);
    int ResolveHostName();
    int ResolveHostNameWsock32();
    int GetNetTransTcpip(HKEY netTrans, const char* subKey, const char* driverDesc);
    // What stands before the first ";", unless that is the first character.
    CString FirstAddress(const CString& addresses) const;
    int ExportNetworkEnvironment();

    // --- MAC address (MACAddress.cpp): hex digits without separators, "unknown" when nothing answers
    CString GetNetbiosMACAddress();
    CString GetARPMACAddress(CString ip);

    // --- Adapters and providers (NetworkAdapters.cpp, NetworkProviders.cpp)
    int GetNetworkProviders();
    int GetProviderOrder9x();
    int GetProviderOrderNT();
    int AddProvider(const char* service);
    int AddProviderProtocols(const char* service);
    int GetNetworkAdapters();
    void GetNetworkCards();
    int GetEnumNetDevices(HKEY enumKey);

    // --- Workgroup and domain (Domain.cpp)
    void GetWorkgroup();
    CString GetDomainName();
    int GetDomainInformation();

    // --- Browsers and mail clients (Browsers.cpp, MailClients.cpp)
    int GetBrowsers();
    int GetDefaultBrowser();
    int GetMailClients();

    // --- Terminal server and remote clients (TerminalServer.cpp, RemoteClients.cpp, LongPath.cpp)
    int GetCitrixProduct();
    int GetTSProduct();
    void GetTSVariables();
    void GetICAClientVersion();
    void GetRDPClientVersion();
    // The path with every component as the disk has it, "c:\Program Files" for "c:\progra~1"; empty when one is
    // missing. Its length.
    int GetLongPath(CString path, CString& longPath);

    CString m_cDomain;
    CString m_cServerMACAddress;
    CString m_cServerIPAddress;
    CString m_cServerName;
    CString m_cIPAddress;
    CString m_cDnsName;
    CString m_cMACAddress;
    CString m_cSubnetMask;
    CString m_cDefaultGateway;
    CString m_cWorkgroupDefault;
    CString m_cWorkgroup;
    CString m_cClientName;
    CString m_cTSClientName;
    CString m_cBrowser;
    CString m_cNetworkAdapters;
    CString m_cNetworkDrivers;
    CString m_cMailClient;
    CString m_cTSProduct;
    CString m_cTSProtocol;
    CString m_cTSBuildNo;
    CString m_cTSProductID;
    CString m_cTSVersion;
    CString m_cProtocols;
    CString m_cDefaultBrowser;
    CString m_cDefaultDomainName;
    CString m_cTSDomainName;
    DWORD m_nTSDomainFlag = 0;
    int m_nStationType = 0;
    int m_nSessionID = -1;
    CString m_cICAClientVersion;
    CString m_cRDPClientVersion;
    CStringList m_lstProviders{10};
    CString m_cProviders;

  private:
    void GetVirtualDesktopClientName();

    void GetStationAddresses(bool wantsMAC);
    void GetSessionAddresses(bool wantsMAC);
    int ReadAdapters();
    int ReadTransports9x();
    int ReadAdaptersNT();
    void TakeDnsName(const char* name);

    int AddNetDevice(HKEY instance);
    void AddProtocol(const CString& description);

    void AddInternetExplorer();
    int AddNetscape(const char* product);
    void AddFirefox();
    void AddOpera();

    void ReadTSVersion();

    CStringList m_lstProtocols{10};  // descriptions that some provider has already put into m_cProtocols
};
