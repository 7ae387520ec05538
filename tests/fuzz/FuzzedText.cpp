#include "tests/fuzz/FuzzedText.h"

#include <algorithm>
#include <string_view>

namespace kvfuzz {
namespace {

// What the module compares with, searches for or takes apart; new ones are appended, so that the corpus keeps its
// meaning.
constexpr std::string_view kWords[] = {
    "1",
    "0",
    "2",
    "3",
    "THIN07",
    "pc-lab3",
    "10.0.0.5",
    "10.0.0.6;10.0.0.5",
    "0.0.0.0",
    "255.255.255.0",
    "nameuserprincipal",
    "MetaFrame",
    "WinFrame",
    "1.80",
    "1.8",
    "Terminal Server",
    "net",
    "NET",
    "display",
    "keyboard",
    "diskdrive",
    "CDROM",
    "DiskPeripheral",
    "CdRomPeripheral",
    "TapePeripheral",
    "tcp/ip",
    "Auto Created Client Printer",
    "htmlfile",
    "icafile",
    "\"C:\\PROGRA~1\\Citrix\\ICACLI~1\\wfica32.exe\" \"%1\"",
    "C:\\Program Files\\Citrix\\wfica32.exe /x",
    "\\\\server\\share\\wfica32.exe",
    "\"C:\\Program Files\\Internet Explorer\\iexplore.exe\" -nohome",
    "netscape netscp opera firefox",
    "C:\\Opera",
    "C:\\WINDOWS",
    "C:\\Program Files\\Netscape\\netscp.exe",
    "lanman,NetWare",
    ",,a,b, ,",
    "\\Device\\NetBT_Tcpip_{A}",
    "\\Device\\_",
    "\\REGISTRY\\Machine\\System\\Video0",
    "\\REGISTRY\\Machine\\",
    "0000\\0001",
    "Outlook Exchange",
    "Internet Explorer Netscape",
    "HP LaserJet,winspool,LPT1:",
    "01/02/03",
    "Lan#3",
    "%s%n%d%x",
    "-2147483648",
    "99999999999999999999",
    // bytes that are half of a character in some code pages, a backslash or a letter of one in others
    "C:\\\x83\x5C\x83\x74\x83\x67\\\x95\x5C\\wfica32.exe /x",
    "\x83\x7C\x81\x5B;\x83\x5D\x82\x81 \x83",
    "\xD0\x9F\xC3\xA4\xE3\x82\xBD\xF0\x9F\x98\x80",
};

std::string_view readWord(InputReader& input) {
    return input.oneOf(kWords);
}

}  // namespace

std::string readText(InputReader& input) {
    const std::uint8_t kind = input.byte();
    switch (kind % 6) {
        case 0:
        case 1:
            return std::string(readWord(input));
        case 2:
            return std::string(input.bytes(input.below(32)));
        case 3:
            return std::string(std::size_t{input.byte()} << (kind / 64), static_cast<char>(input.byte()));
        case 4:
            return std::string(readWord(input)) + std::string(std::size_t{input.byte()} * 2, 'x');
        default: {
            const std::string_view separator = input.flag() ? ";" : std::string_view("\\\0", 2);
            std::string list;
            for (std::size_t count = input.below(16); count > 0; --count)
                list.append(readWord(input)).append(separator);
            return list;
        }
    }
}

std::string readKeyName(InputReader& input) {
    static constexpr std::string_view kNames[] = {
        "0000",    "0001",    "0",          "lanman", "NetBT",    "NetWare",         "4.79 (en)",     "Users", "{A}",
        "Monitor", "Outlook", "Server 5.0", "Tcpip",  "HP Laser", "Default_Monitor", "Exchange Mail", "1",
    };
    if (input.flag())
        return std::string(input.oneOf(kNames));
    std::string name(input.bytes(input.below(8)));
    name.append(std::size_t{input.byte()}, 'n');
    std::replace(name.begin(), name.end(), '\\', '/');
    name.resize(std::min<std::size_t>(name.size(), 255));
    return name.empty() ? "n" : name;
}

std::string readAddress(InputReader& input) {
    static constexpr std::string_view kAddresses[] = {"10.0.0.5", "10.0.0.6", "192.168.7.20", "255.255.255.255"};
    return std::string(input.oneOf(kAddresses));
}

}  // namespace kvfuzz
