/*
 * kvcstat64: the workstation-inventory module of the KelVor client.
 *
 * One export fills one record. Everything that a caller needs is in this header; it is plain C.
 */
#ifndef KVCSTAT_H
#define KVCSTAT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The bytes that a call may write: the caller's block must be at least this long. */
#define KVCSTAT_RECORD_SIZE 4934

/*
 * The station record. The caller owns it, clears ALL of it and passes its address.
 *
 * Text is in the process's ANSI code page. A text field of width N receives at most N-1 bytes of text and no
 * terminator: the terminator is the zero that the caller put there, and an empty text leaves the field as it was.
 * Three fields differ. szVCDVersion is always terminated, also when it is empty. szCDRomDevices and szCDRomDrives are
 * cut, or padded with zeros, to the length of the BIOS date, also when they are empty; one that is longer than its
 * field is cut like any other text.
 *
 * Numbers are 32-bit little-endian, flags 0 or 1; all but dwSessionId are always written, an unknown one as 0. The
 * reserved areas are never written, unless the padding to a long BIOS date reaches them.
 *
 * The structure is two bytes longer than KVCSTAT_RECORD_SIZE because a 32-bit member rounds its size; the module
 * never writes these two.
 */
typedef struct STATIONDATA {
    char szStation[51];             /* name under which the station registers, upper case */
    char szUserName[256];           /* user as the product knows him */
    char szUserDisplayedName[51];   /* user's display name */
    char reserved358[2];            /* alignment */
    int32_t dwKeyboardType;         /* GetKeyboardType(0) */
    int32_t dwOEMCodePage;          /* GetOEMCP() */
    char szKeyboard[101];           /* keyboard description */
    char szSystemIdentifier[51];    /* system identifier or machine type */
    int32_t dwTotalMemoryMB;        /* physical memory in MB, always even */
    char szDiskDevices[251];        /* "2 Disk X;1 Disk Y": disks of the SCSI/ESDI device keys */
    char szCDRomDevices[251];       /* CD-ROM devices of the same keys */
    char szTapeDevices[101];        /* tape devices of the same keys */
    char szOtherDevices[251];       /* all other devices of the same keys */
    char szPrinters[251];           /* printer names joined with ";" */
    char szCDRomDrives[101];        /* CD-ROM drive roots joined with ";" */
    char szRemovableDrives[101];    /* removable drive roots; "|PROTOCOL BUILD PRODUCT" behind them in a session */
    char szFixedDrives[101];        /* fixed drives with label, file system, size in MB and percent free */
    char szWorkgroup[51];           /* workgroup or LAN group */
    char reserved1983[9];           /* one byte of alignment and eight reserved */
    int32_t bInternetExplorer;      /* 1: szBrowser's source names "Internet Explorer" */
    int32_t bNetscape;              /* 1: szBrowser's source names "Netscape" */
    char szTSProduct[51];           /* Citrix product name and version */
    char szDnsName[51];             /* DNS name of the station's address */
    char szDefaultGateway[16];      /* default gateways joined with ";", the first 15 characters */
    char szSubnetMask[16];          /* subnet masks joined with ";", the first 15 characters */
    char szProtocols[251];          /* network protocols joined with ";" */
    char szNetworkDrivers[256];     /* network drivers (Windows 9x) joined with ";" */
    char szServerIPAddress[16];     /* in a remote session: the server's own IP address */
    char szServerMACAddress[13];    /* in a remote session: the server's own MAC address, as szMACAddress */
    char szTSClientName[51];        /* in a remote session: the client device's name */
    char szMailClient[101];         /* registered mail clients joined with ";" */
    char szProviders[251];          /* network providers in provider order, joined with ";" */
    char szBrowser[201];            /* installed browsers with versions, joined with ";" */
    char szDefaultBrowser[51];      /* name of the default browser, or the command line that starts it */
    char szIPAddress[16];           /* the station's (or remote client's) IP address */
    char szNetworkAdapters[251];    /* network adapters joined with ";" */
    int32_t bOutlook;               /* 1: szMailClient's source names "Outlook" */
    int32_t bExchange;              /* 1: szMailClient's source names "Exchange" */
    char szOS[81];                  /* operating-system description */
    char reserved3681[27];          /* reserved */
    char szClientName[51];          /* computer name, or the client device's name in a session */
    char szBiosVersion[101];        /* BIOS version */
    char szCurrentUser[51];         /* logged-on user, or the terminal-session text */
    char szProcessorName[251];      /* processor names joined with ";" */
    char szMonitor[51];             /* monitor description */
    char szVideoAdapter[101];       /* video adapter description */
    char szTSVersion[51];           /* Microsoft terminal-server product name and version */
    char szServerName[51];          /* in a remote session: the server's computer name */
    int32_t dwTSDefaultSrvSessions; /* number in the variable KVTSDefaultSrvSessions */
    int32_t dwWinFrame;             /* 1: WinFrame client session */
    int32_t dwMetaFrame;            /* 1: MetaFrame client session */
    int32_t dwTSClientSession;      /* 1: Terminal Services client session */
    char szMACAddress[13];          /* the station's (or remote client's) MAC address: 12 hex digits, or "unknown" */
    char szDefaultPrinter[101];     /* default printer */
    char szDefaultDomainName[51];   /* default logon domain (in a session) */
    char szBiosDate[11];            /* BIOS date */
    char reserved4608[4];           /* reserved */
    char szWinUser[256];            /* Windows account name, upper case */
    uint32_t dwSessionId;           /* Windows session of the process; written only when it could be read */
    int32_t dwNumberOfProcessors;   /* number of logical processors */
    int32_t dwCurrentMhz;           /* current clock in MHz; 0 when unknown, as it is with several processors */
    char szICAClient[21];           /* file version of the installed ICA client */
    char szRDPClient[21];           /* file version of the installed RDP client */
    char szVCDVersion[12];          /* version of the VCD module as decimal text, terminated */
} STATIONDATA;

/*
 * Fills the record at `record` (at least KVCSTAT_RECORD_SIZE bytes, cleared by the caller). Nothing is reported, and
 * the pointer is not checked. One call at a time per process. Each call leaves open one process handle and at most one
 * token handle, and allocated one internal object and, on a virtual desktop (the registry value KVVDIClient) whose
 * client's name only the Citrix interface knows, the buffer of that answer.
 */
#if defined(_WIN32)
#if !defined(KVCSTAT_BUILD)
__declspec(dllimport)
#endif
    void __cdecl GetStationData(char* record);
#else
void GetStationData(char* record);
#endif

#ifdef __cplusplus
}
#endif

#endif
