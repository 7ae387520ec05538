// The printers that the station's user can print to, and the default one.
#include <memory>

#include "framework/WinApp.h"
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/hardware/HardwareInformation.h"
#include "kvcstat/hardware/PrinterInformation.h"
#include "kvcstat/os/OSInformation.h"

namespace {

// The name as the string table's entry shows it, which has a %s where the name stands.
CString PrinterText(const CString& name) {
    CString text;
    text.LoadString(IDS_PRINTER_NAME);
    const int place = text.Find("%s");
    return place >= 0 ? text.Left(place) + name + text.Mid(place + 2) : text;
}

CString PartBeforeComma(const CString& text) {
    const int comma = text.Find(',');
    return comma >= 0 ? text.Left(comma) : text;
}

}  // namespace

int CHardwareInformation::GetPrinters() {
    const CStatGlobal global;
    const bool remote = global.IsRemoteSession();
    global.DeleteObList(m_Printers);
    GetDefaultPrinter();
    return m_pOSInformation->GetPlatformId() == VER_PLATFORM_WIN32_WINDOWS ? ListPrinters9x(remote) : ListPrintersNT();
}

// Windows NT keeps the user's printers as the names of values; a session's own cannot be told from the others.
int CHardwareInformation::ListPrintersNT() {
    const CStatGlobal global;
    const UniqueRegKey key(
        global.OpenRegKey(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices"));
    int status = -1;
    CString name;
    for (DWORD index = 0; !(name = global.EnumRegValue(key.get(), index)).IsEmpty(); ++index) {
        AddPrinter(std::make_unique<CPrinterInformation>(name), name);
        status = 0;
    }
    return status;
}

// Windows 9x keeps the machine's printers as keys. A session leaves out those that the terminal server made for the
// client's own printers.
int CHardwareInformation::ListPrinters9x(bool remote) {
    const CStatGlobal global;
    const UniqueRegKey key(
        global.OpenRegKey(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Print\\Printers"));
    int status = -1;
    CString description;  // kept from one printer to the next: one without a description goes by the one before it
    CString name;
    for (DWORD index = 0; !(name = global.EnumRegKey(key.get(), index)).IsEmpty(); ++index) {
        const UniqueRegKey printer(global.OpenRegKey(key.get(), name));
        if (printer == nullptr)
            break;
        if (remote)
            global.GetRegString(printer.get(), "Description", description);
        if (description.Find("Auto Created Client Printer") < 0) {
            AddPrinter(std::make_unique<CPrinterInformation>(printer.get()), name);
            status = 0;
        }
    }
    return status;
}

void CHardwareInformation::AddPrinter(std::unique_ptr<CPrinterInformation> printer, const char* name) {
    const CStatGlobal global;
    m_Printers.AddTail(printer.get());
    static_cast<void>(printer.release());
    global.AppendString(m_cPrinterList, name, ";");
}

int CHardwareInformation::GetDefaultPrinter() {
    const CStatGlobal global;
    CString text;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            global.GetRegString(HKEY_CURRENT_CONFIG, "System\\CurrentControlSet\\Control\\Print\\Printers", "default",
                                text);
            m_cDefaultPrinter = text;
            break;
        case VER_PLATFORM_WIN32_NT:
            // Name, driver and port with commas between them, all of which is kept.
            global.GetRegString(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows", "device",
                                text);
            m_cDefaultPrinter = text;
            break;
        default:
            // Name, driver and port; an entry that begins with the comma is a printer without a name, and found.
            text = GetApp()->GetProfileString("windows", "device");
            m_cDefaultPrinter = text.IsEmpty() ? CString() : PrinterText(PartBeforeComma(text));
            break;
    }
    return text.IsEmpty() ? -1 : 0;
}
