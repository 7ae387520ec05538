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
 * The structure is made of kvcstat_fields.inc, which tells each field's offset, its group and whether it is a list too.
 *
 * Text is in the process's ANSI code page. A text field of width N receives at most N-1 bytes of text, cut within a
 * character too, and no terminator: the terminator is the zero that the caller put there, and an empty text leaves the
 * field as it was. The items of a list are joined with ";", those that one registry value holds with "//".
 *
 * Three fields differ. szVCDVersion is always terminated, also when it is empty. szCDRomDevices and szCDRomDrives take
 * their length from the BIOS date: a list that fits its field, an empty one too, is cut, or padded with zeros, to as
 * many bytes as the date has. A date longer than the field pads on into what is behind it, up to the end of the record
 * at most; without a date the field is not written. A list that does not fit is cut to the field like any other text.
 *
 * Numbers are 32-bit little-endian, flags 0 or 1, and an unknown one is 0. All are always written but dwSessionId,
 * which is written only when the session could be read: in a cleared record that cannot be told from session 0. The
 * reserved areas are never written, unless that padding reaches them.
 *
 * The structure is two bytes longer than KVCSTAT_RECORD_SIZE because a 32-bit member rounds its size; the module
 * never writes these two.
 */
typedef struct STATIONDATA {
    char szStation[51];             /* name under which the station registers, upper case */
    char szUserName[256];           /* user as the product knows him */
    char szUserDisplayedName[51];   /* user's display name */
    char reserved358[2];            /* reserved */
    int32_t dwKeyboardType;         /* keyboard type, GetKeyboardType(0) */
    int32_t dwOEMCodePage;          /* OEM code page */
    char szKeyboard[101];           /* keyboard description */
    char szSystemIdentifier[51];    /* system identifier or machine type */
    int32_t dwTotalMemoryMB;        /* physical memory in MB, always even */
    char szDiskDevices[251];        /* disk devices, counted: 2 Disk X;1 Disk Y */
    char szCDRomDevices[251];       /* CD-ROM devices, counted, cut to the length of the BIOS date */
    char szTapeDevices[101];        /* tape devices, counted */
    char szOtherDevices[251];       /* other devices, counted */
    char szPrinters[251];           /* printers */
    char szCDRomDrives[101];        /* roots of CD-ROM drives, cut to the length of the BIOS date */
    char szRemovableDrives[101];    /* roots of removable drives, then the session's protocol data */
    char szFixedDrives[101];        /* fixed drives with label, file system, size in MB and percent free */
    char szWorkgroup[51];           /* workgroup or LAN group */
    char reserved1983[9];           /* reserved */
    int32_t bInternetExplorer;      /* 1 when the browsers name Internet Explorer */
    int32_t bNetscape;              /* 1 when the browsers name Netscape */
    char szTSProduct[51];           /* Citrix product and version */
    char szDnsName[51];             /* DNS name of the address */
    char szDefaultGateway[16];      /* default gateways */
    char szSubnetMask[16];          /* subnet masks */
    char szProtocols[251];          /* network protocols */
    char szNetworkDrivers[256];     /* network drivers, on Windows 9x */
    char szServerIPAddress[16];     /* the server's own IP address, in a remote session */
    char szServerMACAddress[13];    /* the server's own MAC address, in a remote session */
    char szTSClientName[51];        /* name of the client device, in a remote session */
    char szMailClient[101];         /* registered mail clients */
    char szProviders[251];          /* network providers in their order */
    char szBrowser[201];            /* installed browsers with versions */
    char szDefaultBrowser[51];      /* default browser: its name, or the command line that starts it */
    char szIPAddress[16];           /* IP address of station or remote client; of several, joined with ";", what fits */
    char szNetworkAdapters[251];    /* network adapters */
    int32_t bOutlook;               /* 1 when the mail clients name Outlook */
    int32_t bExchange;              /* 1 when the mail clients name Exchange */
    char szOS[81];                  /* operating-system description */
    char reserved3681[27];          /* reserved */
    char szClientName[51];          /* computer name, or the client device's name in a session */
    char szBiosVersion[101];        /* BIOS version */
    char szCurrentUser[51];         /* logged-on user, or the terminal-session text */
    char szProcessorName[251];      /* processor names */
    char szMonitor[51];             /* monitor */
    char szVideoAdapter[101];       /* video adapters */
    char szTSVersion[51];           /* Microsoft terminal-server product and version */
    char szServerName[51];          /* the server's computer name, in a remote session */
    int32_t dwTSDefaultSrvSessions; /* number of server sessions by default, of KVTSDefaultSrvSessions */
    int32_t dwWinFrame;             /* 1 in a WinFrame client session */
    int32_t dwMetaFrame;            /* 1 in a MetaFrame client session */
    int32_t dwTSClientSession;      /* 1 in a Terminal Services client session */
    char szMACAddress[13];          /* MAC address of station or remote client, 12 hex digits or "unknown" */
    char szDefaultPrinter[101];     /* default printer */
    char szDefaultDomainName[51];   /* default logon domain, in a session */
    char szBiosDate[11];            /* BIOS date */
    char reserved4608[4];           /* reserved */
    char szWinUser[256];            /* Windows account name, upper case */
    uint32_t dwSessionId;           /* Windows session of the calling process */
    int32_t dwNumberOfProcessors;   /* number of logical processors */
    int32_t dwCurrentMhz;           /* current clock in MHz; 0 when unknown, as it is with several processors */
    char szICAClient[21];           /* file version of the installed ICA client */
    char szRDPClient[21];           /* file version of the installed RDP client */
    char szVCDVersion[12];          /* version of the VCD module, a decimal number */
} STATIONDATA;

/*
 * Fills the record at `record` (at least KVCSTAT_RECORD_SIZE bytes, cleared by the caller). Nothing is reported, and
 * the pointer is not checked. One call at a time per process.
 *
 * Each call leaves open, on purpose, one process handle and at most one token handle, and allocated one internal
 * object: call it when a station registers, not in a loop. On a virtual desktop (the registry value KVVDIClient) whose
 * client's name only the Citrix interface knows, the buffer of that answer stays allocated too.
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
