// The collection run: the module's one export.
#include <cstddef>
#include <cstdlib>

#include "framework/ModuleState.h"
#include "include/kvcstat.h"
#include "kvcstat/RecordWriter.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/Trace.h"
#include "kvcstat/hardware/HardwareInformation.h"
#include "kvcstat/hardware/VideoInformation.h"
#include "kvcstat/network/NetworkInformation.h"
#include "kvcstat/os/OSInformation.h"
#include "kvcstat/user/StatInformation.h"
#include "kvcstat/user/UserInformation.h"

namespace {

// The collectors of one call, in the order of their construction; they go in the reverse order.
struct Collectors {
    CUserInformation user;
    CNetworkInformation network;
    COSInformation os;
    CVideoInformation video;
    CStatInformation station;
    CString cUserName;
};

// The collector is left allocated on purpose, one for each call, with all that it owns.
CHardwareInformation* CollectHardware(Collectors& collectors) {
    auto* hardware = new CHardwareInformation(&collectors.os);
    hardware->m_cUserName = collectors.cUserName;
    hardware->Collect();
    hardware->CollectSecond();
    return hardware;
}

CHardwareInformation* Collect(Collectors& collectors) {
    collectors.user.Collect(collectors.cUserName);
    collectors.network.GetNetworkInformation();
    collectors.os.ReadVersion();
    CHardwareInformation* hardware = CollectHardware(collectors);
    collectors.video.GetVideoInformation();
    collectors.station.Collect(collectors.network);
    collectors.station.MarkSession(collectors.network);
    collectors.station.ReadVCDVersion();
    return hardware;
}

void Publish(Collectors& collectors) {
    collectors.network.ExportNetworkEnvironment();
    collectors.os.PublishOSName();
    collectors.user.PublishUser();
    collectors.station.Publish();
}

// In a terminal session the removable drives carry the session's protocol, build and product behind a bar.
void AppendSessionSuffix(CHardwareInformation& hardware, const CNetworkInformation& network) {
    if (network.m_cTSProtocol.IsEmpty())
        return;
    hardware.m_cRemovableDriveList.Format("%s|%s %s %s", static_cast<const char*>(hardware.m_cRemovableDriveList),
                                          static_cast<const char*>(network.m_cTSProtocol),
                                          static_cast<const char*>(network.m_cTSBuildNo),
                                          static_cast<const char*>(network.m_cTSProductID));
}

std::uint32_t Contains(const CString& text, const char* word) {
    return text.Find(word) >= 0 ? 1 : 0;
}

#define KV_FIELD(field) offsetof(STATIONDATA, field)
#define KV_FIELD_AND_LIMIT(field) offsetof(STATIONDATA, field), sizeof(STATIONDATA::field) - 1

void PutFlags(const RecordWriter& record, const CNetworkInformation& network) {
    record.PutNumber(KV_FIELD(bExchange), Contains(network.m_cMailClient, "Exchange"));
    record.PutNumber(KV_FIELD(bOutlook), Contains(network.m_cMailClient, "Outlook"));
    record.PutNumber(KV_FIELD(bInternetExplorer), Contains(network.m_cBrowser, "Internet Explorer"));
    record.PutNumber(KV_FIELD(bNetscape), Contains(network.m_cBrowser, "Netscape"));
}

void PutNumbers(const RecordWriter& record, const CStatInformation& station, const CHardwareInformation& hardware) {
    record.PutNumber(KV_FIELD(dwWinFrame), static_cast<std::uint32_t>(station.m_bWinFrame));
    record.PutNumber(KV_FIELD(dwMetaFrame), static_cast<std::uint32_t>(station.m_bMetaFrame));
    record.PutNumber(KV_FIELD(dwTSClientSession), static_cast<std::uint32_t>(station.m_bTSClientSession));
    record.PutNumber(KV_FIELD(dwTotalMemoryMB), hardware.m_nTotalMemoryMB);
    record.PutNumber(KV_FIELD(dwOEMCodePage), hardware.m_nOEMCodePage);
    record.PutNumber(KV_FIELD(dwKeyboardType), static_cast<std::uint32_t>(hardware.m_nKeyboardType));
}

// The order counts: the zero padding of the two CD-ROM fields may run into fields that a later copy writes again.
void PutTexts(const RecordWriter& record, const Collectors& collectors, const CHardwareInformation& hardware) {
    const CNetworkInformation& network = collectors.network;
    record.PutText(KV_FIELD_AND_LIMIT(szNetworkAdapters), network.m_cNetworkAdapters);
    record.PutText(KV_FIELD_AND_LIMIT(szDefaultDomainName), network.m_cDefaultDomainName);
    record.PutText(KV_FIELD_AND_LIMIT(szBiosVersion), hardware.m_cBiosVersion);
    record.PutText(KV_FIELD_AND_LIMIT(szBiosDate), hardware.m_cBiosDate);
    record.PutTextCountedBy(KV_FIELD_AND_LIMIT(szCDRomDevices), hardware.m_cCDRomDevices, hardware.m_cBiosDate);
    record.PutTextCountedBy(KV_FIELD_AND_LIMIT(szCDRomDrives), hardware.m_cCDRomDriveList, hardware.m_cBiosDate);
    record.PutText(KV_FIELD_AND_LIMIT(szClientName), network.m_cClientName);
    record.PutText(KV_FIELD_AND_LIMIT(szProcessorName), hardware.m_cProcessorName);
    record.PutText(KV_FIELD_AND_LIMIT(szOtherDevices), hardware.m_cOtherDevices);
    record.PutText(KV_FIELD_AND_LIMIT(szDefaultGateway), network.m_cDefaultGateway);
    record.PutText(KV_FIELD_AND_LIMIT(szDiskDevices), hardware.m_cDiskDevices);
    record.PutText(KV_FIELD_AND_LIMIT(szWorkgroup), network.m_cWorkgroup);
    record.PutText(KV_FIELD_AND_LIMIT(szNetworkDrivers), network.m_cNetworkDrivers);
    record.PutText(KV_FIELD_AND_LIMIT(szFixedDrives), hardware.m_cFixedDriveList);
    record.PutText(KV_FIELD_AND_LIMIT(szIPAddress), network.m_cIPAddress);
    record.PutText(KV_FIELD_AND_LIMIT(szDnsName), network.m_cDnsName);
    record.PutText(KV_FIELD_AND_LIMIT(szKeyboard), hardware.m_cKeyboard);
    record.PutText(KV_FIELD_AND_LIMIT(szCurrentUser), hardware.m_cCurrentUser);
    record.PutText(KV_FIELD_AND_LIMIT(szMACAddress), network.m_cMACAddress);
    record.PutText(KV_FIELD_AND_LIMIT(szMailClient), network.m_cMailClient);
    record.PutText(KV_FIELD_AND_LIMIT(szMonitor), collectors.video.m_cMonitor);
    record.PutText(KV_FIELD_AND_LIMIT(szOS), collectors.os.m_cOSDescription);
    record.PutText(KV_FIELD_AND_LIMIT(szPrinters), hardware.m_cPrinterList);
    record.PutText(KV_FIELD_AND_LIMIT(szProtocols), network.m_cProtocols);
    record.PutText(KV_FIELD_AND_LIMIT(szProviders), network.m_cProviders);
    record.PutText(KV_FIELD_AND_LIMIT(szRemovableDrives), hardware.m_cRemovableDriveList);
    record.PutText(KV_FIELD_AND_LIMIT(szDefaultPrinter), hardware.m_cDefaultPrinter);
    record.PutText(KV_FIELD_AND_LIMIT(szDefaultBrowser), network.m_cDefaultBrowser);
    record.PutText(KV_FIELD_AND_LIMIT(szStation), collectors.station.m_cStation);
    record.PutText(KV_FIELD_AND_LIMIT(szSubnetMask), network.m_cSubnetMask);
    record.PutText(KV_FIELD_AND_LIMIT(szSystemIdentifier), hardware.m_cSystemIdentifier);
    record.PutText(KV_FIELD_AND_LIMIT(szTapeDevices), hardware.m_cTapeDevices);
    record.PutText(KV_FIELD_AND_LIMIT(szTSVersion), network.m_cTSVersion);
    record.PutText(KV_FIELD_AND_LIMIT(szUserName), collectors.cUserName);
    record.PutText(KV_FIELD_AND_LIMIT(szVideoAdapter), collectors.video.m_cVideoAdapter);
    record.PutText(KV_FIELD_AND_LIMIT(szBrowser), network.m_cBrowser);
    record.PutText(KV_FIELD_AND_LIMIT(szTSProduct), network.m_cTSProduct);
    record.PutText(KV_FIELD_AND_LIMIT(szTSClientName), network.m_cTSClientName);
    record.PutText(KV_FIELD_AND_LIMIT(szServerIPAddress), network.m_cServerIPAddress);
    record.PutText(KV_FIELD_AND_LIMIT(szServerMACAddress), network.m_cServerMACAddress);
    record.PutText(KV_FIELD_AND_LIMIT(szServerName), network.m_cServerName);
    record.PutText(KV_FIELD_AND_LIMIT(szWinUser), collectors.user.m_cWinUser);
}

// Process and token handle stay open, as the product has always left them: one of each, at most, for each call.
bool ReadSessionId(DWORD& sessionId) {
    HANDLE token = nullptr;
    DWORD size = 0;
    sessionId = 0xFFFFFFFF;
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetCurrentProcessId());
    return OpenProcessToken(process, TOKEN_QUERY, &token) != FALSE &&
           GetTokenInformation(token, TokenSessionId, &sessionId, sizeof sessionId, &size) != FALSE;
}

void PutSessionId(const RecordWriter& record) {
    DWORD sessionId = 0;
    if (ReadSessionId(sessionId))
        record.PutNumber(KV_FIELD(dwSessionId), sessionId);
}

void PutLateFields(const RecordWriter& record, const Collectors& collectors, const CHardwareInformation& hardware) {
    record.PutText(KV_FIELD_AND_LIMIT(szUserDisplayedName), collectors.user.m_cUserDisplayedName);
    record.PutText(KV_FIELD_AND_LIMIT(szICAClient), collectors.network.m_cICAClientVersion);
    record.PutText(KV_FIELD_AND_LIMIT(szRDPClient), collectors.network.m_cRDPClientVersion);
    record.PutNumber(KV_FIELD(dwNumberOfProcessors), hardware.m_dwNumberOfProcessors);
    record.PutNumber(KV_FIELD(dwCurrentMhz), hardware.m_nCurrentMhz);
}

void PutDefaultServerSessions(const RecordWriter& record, const CStatGlobal& global) {
    const int sessions = std::atoi(global.GetEnvVar("KVTSDefaultSrvSessions"));
    record.PutNumber(KV_FIELD(dwTSDefaultSrvSessions), static_cast<std::uint32_t>(sessions));
}

}  // namespace

extern "C" void GetStationData(char* record) {
    const CModuleStateScope state(GetStaticModuleState());
    ZRTrace(kTraceActions, kTraceComponent, "Reading station data.\n");
    Collectors collectors;
    CHardwareInformation& hardware = *Collect(collectors);
    Publish(collectors);
    AppendSessionSuffix(hardware, collectors.network);

    const RecordWriter writer(record);
    PutFlags(writer, collectors.network);
    PutNumbers(writer, collectors.station, hardware);
    PutTexts(writer, collectors, hardware);
    PutSessionId(writer);
    PutLateFields(writer, collectors, hardware);
    const CStatGlobal global;
    PutDefaultServerSessions(writer, global);
    writer.PutOpenText(KV_FIELD(szVCDVersion), collectors.station.m_cVCDVersion);
}
