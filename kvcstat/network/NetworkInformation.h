#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// The station's network: names, addresses, MAC, adapters, providers, domain; and the software that clients talk to:
// terminal-server product, remote clients, browsers, mail clients. One source file for each concern.
//
// Members are only assigned or appended to: one object serves one collection. Lists are joined with ";". The statuses
// are 0 or -1, and nobody acts on them.
class CNetworkInformation : public CObject {
  public:
    ~CNetworkInformation() override = default;

    // The whole collection, in its fixed order. Status of the mail step.
    int GetNetworkInformation();

    // --- Names (ComputerName.cpp)
    // 0 when the name was known already or is Windows' own; -1 for a client's name, and when there is none.
    int GetComputerName();
    CString GetLocalComputerName();

    // --- IP configuration (IPConfiguration.cpp, IPAdapters.cpp, HostName.cpp)
    // Status of the adapters' last read; on Windows 9x 0 when a transport was found.
    int GetIPConfiguration();
    CString GetHostAddress(int family);
    CString GetClientIPAddress(int family);
    int GetSessionID();  // the session's number; -1 outside a remote session
    CString GetDnsName(const char* ip, int family);
    int ResolveHostName();         // 0 when ws2_32.dll's resolver gave an address, else -1
    int ResolveHostNameWsock32();  // 0 when wsock32.dll's gave one of IPv4, else -1
    // Status of its last read, -1 when there was none.
    int GetNetTransTcpip(HKEY netTrans, const char* subKey, const char* driverDesc);
    // What stands before the first ";", unless that is the first character.
    CString FirstAddress(const CString& addresses) const;
    int ExportNetworkEnvironment();  // always 0

    // --- MAC address (MACAddress.cpp): hex digits without separators, "unknown" when nothing answers
    CString GetNetbiosMACAddress();
    CString GetARPMACAddress(CString ip);

    // --- Adapters and providers (NetworkAdapters.cpp, NetworkProviders.cpp)
    // Status of the last provider, on Windows NT of its protocols; -1 when there is none.
    int GetNetworkProviders();
    int GetProviderOrder9x();
    int GetProviderOrderNT();
    int AddProvider(const char* service);           // 0 when it was listed
    int AddProviderProtocols(const char* service);  // status of its last read
    int GetNetworkAdapters();                       // on Windows 9x GetEnumNetDevices' of the last key, else 0
    void GetNetworkCards();
    int GetEnumNetDevices(HKEY enumKey);  // status of its last read, -1 when there was none

    // --- Workgroup and domain (Domain.cpp)
    void GetWorkgroup();
    CString GetDomainName();
    int GetDomainInformation();  // always -1

    // --- Browsers and mail clients (Browsers.cpp, MailClients.cpp)
    int GetBrowsers();        // 0 when the key of Netscape Navigator Gold is there
    int GetDefaultBrowser();  // 0 when there is one
    int GetMailClients();     // 0 when their key is there

    // --- Terminal server and remote clients (TerminalServer.cpp, RemoteClients.cpp, LongPath.cpp)
    int GetCitrixProduct();  // always -1
    int GetTSProduct();      // always -1
    void GetTSVariables();
    void GetICAClientVersion();
    void GetRDPClientVersion();
    // The path with every component as the disk has it, "c:\Program Files" for "c:\progra~1"; empty when one is
    // missing. Returns its length, which the walk itself goes by.
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
    CStringList m_lstProviders;
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

    CStringList m_lstProtocols;  // descriptions that a provider of this walk has already put into m_cProtocols
};
