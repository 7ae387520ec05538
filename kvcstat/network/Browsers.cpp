// The default browser and the installed ones with their versions.
#include "framework/CRuntime.h"
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

// The first of these texts that the default browser's lower-cased command line holds tells its name.
struct BrowserName {
    const char* text;
    unsigned id;
};
constexpr BrowserName kBrowserNames[] = {
    {"iexplor", IDS_INTERNET_EXPLORER},
    {"netscape", IDS_NETSCAPE},
    {"opera", IDS_OPERA},
    {"netscp", IDS_MOZILLA},  // the program of the later Netscape, which stations register as Mozilla
    {"firefox", IDS_FIREFOX},
};

// The command that opens web pages, in lower case; empty when no document type is associated with them.
CString ReadOpenCommand() {
    const CStatGlobal global;
    CString documentType;
    CString command;
    global.GetRegString(HKEY_CLASSES_ROOT, ".html", "", documentType);
    if (!documentType.IsEmpty())
        global.GetRegString(HKEY_CLASSES_ROOT, documentType + "\\shell\\open\\command", "", command);
    return command.MakeLower();
}

bool BeginsWithDigit(const CString& text) {
    return text[0] >= '0' && text[0] <= '9';
}

// The later Netscape's program files are asked for their versions, which are not listed: Netscape's entry is the
// older key's.
void ReadNetscapeProgramVersions() {
    const CStatGlobal global;
    const CString path("Software\\Netscape");
    const UniqueRegKey products(global.OpenRegKey(HKEY_LOCAL_MACHINE, path));
    CString product;
    for (DWORD index = 0; !(product = global.EnumRegKey(products.get(), index)).IsEmpty(); ++index) {
        const UniqueRegKey versions(global.OpenRegKey(products.get(), product));
        if (versions == nullptr)
            continue;
        const CString version = global.EnumRegKey(versions.get(), 0);
        CString program;
        global.GetRegString(HKEY_LOCAL_MACHINE, path + "\\" + product + "\\" + version + "\\Main", "PathToExe",
                            program);
        if (!program.IsEmpty())
            global.GetFileVersion(program);
    }
}

}  // namespace

int CNetworkInformation::GetBrowsers() {
    GetDefaultBrowser();
    AddInternetExplorer();
    AddNetscape("Netscape");
    const int status = AddNetscape("Netscape Navigator Gold");
    ReadNetscapeProgramVersions();
    AddFirefox();
    AddOpera();
    return status;
}

int CNetworkInformation::GetDefaultBrowser() {
    const CStatGlobal global;
    const CString command = ReadOpenCommand();
    if (_access(command, 0) == 0)
        global.GetFileVersionString(command, "ProductName");
    if (m_cDefaultBrowser.IsEmpty()) {
        m_cDefaultBrowser = command;
        for (const BrowserName& browser : kBrowserNames) {
            if (command.Find(browser.text) >= 0) {
                m_cDefaultBrowser.LoadString(browser.id);
                break;
            }
        }
    }
    return m_cDefaultBrowser.IsEmpty() ? -1 : 0;
}

// The only item that is assigned, and the only one that always ends in a blank.
void CNetworkInformation::AddInternetExplorer() {
    const CStatGlobal global;
    CString version;
    if (global.GetRegString(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Internet Explorer", "Version", version) == 0)
        m_cBrowser = "Internet Explorer " + version + " ";
}

int CNetworkInformation::AddNetscape(const char* product) {
    const CStatGlobal global;
    const UniqueRegKey key(global.OpenRegKey(HKEY_LOCAL_MACHINE, CString("Software\\Netscape\\") + product));
    if (key == nullptr)
        return -1;
    // Only the first sub-key counts, and only when it is a version, such as "4.79 (en)", and not "Users".
    const CString version = global.EnumRegKey(key.get(), 0);
    if (BeginsWithDigit(version))
        global.AppendString(m_cBrowser, CString(product) + " " + version, ";");
    return 0;
}

void CNetworkInformation::AddFirefox() {
    const CStatGlobal global;
    CString version;
    if (global.GetRegString(HKEY_LOCAL_MACHINE, "Software\\Mozilla\\Mozilla Firefox", "CurrentVersion", version) == 0)
        global.AppendString(m_cBrowser, "Mozilla Firefox " + version, ";");
}

// Opera is installed for each user.
void CNetworkInformation::AddOpera() {
    const CStatGlobal global;
    CString folder;
    if (global.GetRegString(HKEY_CURRENT_USER, "Software\\Opera Software", "Last Directory3", folder) == 0)
        global.AppendString(m_cBrowser, "Opera " + global.GetFileVersion(folder + "\\opera.exe"), ";");
}
