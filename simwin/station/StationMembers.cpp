#include "simwin/station/StationMembers.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "simwin/station/Forms.h"
#include "simwin/station/NetworkForms.h"
#include "simwin/station/StorageForms.h"
#include "simwin/station/ValueForms.h"

namespace simwin {

template <>
constexpr Member<Collected> kMembers<Collected>[] = {
    member<&Collected::at, TimeForm>("at", "when, in UTC; what is not known of the three is left out"),
    member<&Collected::library, ReleaseForm>("library", "the version of the kvcstat64.dll that collected"),
    member<&Collected::tool, ReleaseForm>("tool", "the version of `kvstation`"),
};

template <>
constexpr Member<CodePages> kMembers<CodePages>[] = {
    always<&CodePages::ansi, AnsiCodePageForm>(
        "ansi", "ANSI code page, which the bytes of all the station's texts are in; 65001 is UTF-8"),
    always<&CodePages::oem>("oem", "GetOEMCP"),
};

template <>
constexpr Member<WindowsVersion> kMembers<WindowsVersion>[] = {
    always<&WindowsVersion::platformId>("platformId", "0 Win32s, 1 Windows 9x, 2 Windows NT"),
    always<&WindowsVersion::major>("major", "major version"),
    always<&WindowsVersion::minor>("minor", "minor version"),
    always<&WindowsVersion::build>(
        "build",
        "build number; on Windows 9x GetVersionExA puts major and minor version into its upper half by itself"),
    member<&WindowsVersion::servicePack>("servicePack", Tells::Version, "szCSDVersion"),
    member<&WindowsVersion::terminalServices>("terminalServices",
                                              "VerifyVersionInfoA's answer about the terminal suite"),
};

template <std::size_t... Number>
constexpr auto keyboardMembers(std::index_sequence<Number...>) {
    return std::array{
        always<kKeyboardNumbers[Number].number>(kKeyboardNumbers[Number].name, kKeyboardNumbers[Number].meaning)...};
}
template <>
constexpr auto kMembers<Keyboard> = keyboardMembers(std::make_index_sequence<std::size(kKeyboardNumbers)>());

template <>
constexpr Member<User> kMembers<User>[] = {
    member<&User::name>("name", Tells::Name, "GetUserNameA"),
    member<&User::samCompatible>("samCompatible", Tells::Name,
                                 "GetUserNameExA's format 2; absent: it fails with ERROR_NONE_MAPPED"),
    member<&User::displayName>("displayName", Tells::Name, "format 3, in the same way"),
    member<&User::principal>("principal", Tells::Name, "format 8, in the same way"),
    member<&User::network>("network", Tells::Name, "KVGetUserName; absent: it returns 0"),
    member<&User::directory>("directory", Tells::Name, "KVNDSWhoAmI; absent: it returns 0"),
};

template <>
constexpr Member<Process> kMembers<Process>[] = {
    always<&Process::id>("id", "its number"),
    member<&Process::sessionId>("sessionId", "its token's session; absent: GetTokenInformation fails"),
};

template <>
constexpr Member<Processors> kMembers<Processors>[] = {
    always<&Processors::architecture>("architecture", "wProcessorArchitecture"),
    always<&Processors::count>("count", "dwNumberOfProcessors"),
    always<&Processors::type>("type", "dwProcessorType"),
    always<&Processors::level>("level", "wProcessorLevel"),
    always<&Processors::revision>("revision", "wProcessorRevision"),
    member<&Processors::currentMhz>(
        "currentMhz", "one clock per processor for CallNtPowerInformation, which needs room for all; absent: it fails"),
};

template <>
constexpr Member<Memory> kMembers<Memory>[] = {
    always<&Memory::physical>("physical", "bytes"),
    always<&Memory::virtualSize>("virtual", "bytes"),
};

template <>
constexpr Member<Clusters> kMembers<Clusters>[] = {
    always<&Clusters::sectorsPerCluster>("sectorsPerCluster", "sectors of one cluster"),
    always<&Clusters::bytesPerSector>("bytesPerSector", "bytes of one sector"),
    always<&Clusters::free>("free", "free clusters"),
    always<&Clusters::total>("total", "all clusters"),
};

namespace {

// Without a total a drive has no space, of which nothing is told then.
JsonView::Json freeBytes(const Drive& drive) {
    return drive.total ? JsonView::Json(drive.free) : JsonView::Json();
}
JsonView::Json totalFreeBytes(const Drive& drive) {
    const bool isOther = drive.totalFree && *drive.totalFree != drive.free;
    return drive.total && isOther ? JsonView::Json(*drive.totalFree) : JsonView::Json();
}

}  // namespace

template <>
constexpr Member<Drive> kMembers<Drive>[] = {
    always<&Drive::type, DriveTypeForm>("type", "GetDriveTypeA"),
    member<&Drive::label>("label", Tells::Words,
                          "GetVolumeInformationA, which fails with neither label nor file system"),
    member<&Drive::fileSystem>("fileSystem", Tells::Words, "of the same call"),
    member<&Drive::serial>("serial", "of the same call"),
    member<&Drive::total>("total",
                          "bytes; absent: GetDiskFreeSpaceExA fails, and without `clusters` GetDiskFreeSpaceA too"),
    member<&Drive::free>("free", "bytes that the caller may use").writtenBy(freeBytes),
    member<&Drive::totalFree>("totalFree", "free bytes in all, where a quota makes them more than `free`")
        .writtenBy(totalFreeBytes),
    member<&Drive::clusters>("clusters",
                             "for GetDiskFreeSpaceA; absent: that tells `total` and `free` in clusters of 4096 bytes"),
};

template <>
constexpr Member<File> kMembers<File>[] = {
    member<&File::version>("version", "its version resource is made of it"),
    member<&File::resource, Maybe<BytesForm>>("resource", Tells::VersionBytes,
                                              "a raw version resource in its place, which need not be whole"),
};

namespace {

JsonView::Json officialName(const Host& host) {
    return host.name != host.hostName ? TextForm::write(host.name) : JsonView::Json();
}

}  // namespace

template <>
constexpr Member<Host> kMembers<Host>[] = {
    member<&Host::name>("name", Tells::Host, "the official name; absent: NAME").writtenBy(officialName),
    member<&Host::addressType>("addressType", "h_addrtype"),
    member<&Host::addresses, AddressListForm>("addresses", Tells::AddressBytes, "its addresses"),
};

namespace {

// A host whose official name is the one that is asked for, unless another one is told.
struct HostForm : ObjectForm<Host> {
    static void read(const JsonView& view, Host& host) {
        host.name = host.hostName;
        readMembers(view, host);
    }
};

}  // namespace

template <>
constexpr Member<Lana> kMembers<Lana>[] = {
    always<&Lana::number>("lana", "the adapter's number"),
    member<&Lana::address, Maybe<PhysicalAddressForm<6, 6>>>("address", Tells::PhysicalBytes,
                                                             "absent: its status query fails"),
};

using HostsForm = Named<&Host::hostName, HostName, HostForm>;
using ReverseEntriesForm = Named<&ReverseEntry::address, DottedAddress, Only<&ReverseEntry::name>>;
using ArpForm = Named<&ArpEntry::address, DottedAddress, Only<&ArpEntry::physical, PhysicalAddressForm<0, 16>>>;

template <>
constexpr Member<StationNetwork> kMembers<StationNetwork>[] = {
    member<&StationNetwork::hostName>("hostName", Tells::Name, "gethostname; absent: it fails"),
    member<&StationNetwork::hosts, HostsForm>("hosts", "gethostbyname"),
    member<&StationNetwork::addresses, ReverseEntriesForm>(
        "addresses", Tells::Host,
        "the name that gethostbyaddr and getnameinfo find; no entry: null and the address as text"),
    member<&StationNetwork::arp, ArpForm>(
        "arp", Tells::PhysicalBytes,
        "what SendARP finds; no entry: it fails with 67. At most 8 bytes are written into a buffer that is "
        "shorter than the address; its length word tells all"),
    member<&StationNetwork::netbios>("netbios", "adapters in the order of their enumeration"),
    member<&StationNetwork::lanGroup>("lanGroup", Tells::Name, "NetWkstaGetInfo's group; absent: it fails"),
    member<&StationNetwork::domain>("domain", Tells::Name, "KVGetDomainName; absent: it empties the string"),
};

template <>
constexpr Member<CompanionText> kMembers<CompanionText>[] = {
    always<&CompanionText::text>("text", Tells::Nothing, "what is filled in"),
    always<&CompanionText::result>("result", "what the call returns"),
    member<&CompanionText::terminated>("terminated", "whether a NUL is written behind the text"),
};

struct CompanionTextForm {
    static constexpr bool kIsText = true;
    static void read(const JsonView& view, CompanionText& text) {
        bool isWhole = !view.isObject();
        if (!isWhole)
            view.eachMember([&](const std::string& name, const JsonView&) { isWhole = isWhole || name == kHex; });
        if (isWhole)
            TextForm::read(view, text.text);
        else
            readMembers(view, text);
    }
    static JsonView::Json write(const CompanionText& text) {
        const bool isUsual = text.result == untold<CompanionText>().result && text.terminated;
        return isUsual ? TextForm::write(text.text) : writeMembers(text);
    }
    static void tell(MemberText& member, MemberTexts&) { member.value = "text, or its parts"; }
    static void eachText(CompanionText& text, const Told& told, const TextVisitor& visit) { visit(text.text, told); }
    static ToldAt at(PathBelow path, Tells tells) { return {.isMember = path.empty(), .text = tells}; }
};
template <>
struct FormOf<CompanionText> : CompanionTextForm {};

template <>
constexpr Member<Session> kMembers<Session>[] = {
    member<&Session::clientName>("clientName", Tells::Name, "ZRTSQueryClientName"),
    member<&Session::clientAddress>("clientAddress", Tells::Addresses, "ZRTSQueryIPAddress"),
    member<&Session::id>("id", "ZRTSQuerySessionID"),
    member<&Session::domain>("domain", Tells::Name, "ZRTSDomainName"),
};

template <>
constexpr Member<Citrix> kMembers<Citrix>[] = {
    member<&Citrix::clientName>("clientName", Tells::Name, "its session query; absent: that fails"),
};

using VariablesForm = Named<&Variable::name, VariableName, Only<&Variable::value>>;

template <>
constexpr Member<Station> kMembers<Station>[] = {
    member<&Station::description, Utf8Form>("description", Tells::Utf8Words, "one line: what machine this is"),
    member<&Station::collected>("collected",
                                "of a captured station. One that was written by hand or imported from a "
                                "disk has none"),
    always<&Station::codePages>("codePages", "of the machine"),
    member<&Station::version>("version",
                              "of Windows; absent: GetVersionExA fails. Of a captured station it is the true version; "
                              "with `capture --as-caller` the "
                              "one that a [program without a manifest](calling.md#the-version-of-windows) is told"),
    member<&Station::keyboard>("keyboard", "absent: its numbers are 0"),
    member<&Station::computerName>("computerName", Tells::Name, "GetComputerNameA; absent: it fails"),
    member<&Station::user>("user", "who is logged on"),
    member<&Station::environment, VariablesForm>("environment", Tells::Setting, "variables"),
    member<&Station::process>("process", "the own one; absent: OpenProcess fails. There are no tokens on Windows 9x"),
    member<&Station::processors>("processors", "GetSystemInfo"),
    member<&Station::memory>("memory", "GlobalMemoryStatus"),
    member<&Station::drives>("drives", "drives by upper-case letter"),
    member<&Station::files, Named<&File::path, FilePath>>(
        "files", "what is on disk, by its path in the real letter case; the folders above a file exist with it"),
    member<&Station::network>("network", "what the network tells"),
    member<&Station::session>("session",
                              "the terminal session. An absent text is answered with result 0 and an untouched buffer"),
    member<&Station::citrix>("citrix", "present: wfapi64.dll loads"),
    member<&Station::vcdVersion>("vcdVersion", "present: KVVCD32.dll loads, and its KVGetVCDVersion gives this number"),
    member<&Station::profile>("profile", Tells::OwnWords,
                              "kvcstat64.ini. Blanks at a value's ends do not count, and one pair of quotes "
                              "around it"),
    member<&Station::missing, ListOf<MissingNameForm>>(
        "missing",
        "libraries that do not load, such as `wsock32.dll`, and functions that are not in theirs, such as "
        "`netapi32.dll!NetWkstaGetInfo`"),
    member<&Station::fails>("fails",
                            "the error that a call always gives, such as `\"GetVersionExA\": 120`. Calls that "
                            "cannot fail on Windows, such as GetVersion, do not heed it"),
    member<&Station::deniedKeys>("deniedKeys", Tells::Key,
                                 "keys by full path that cannot be opened; each must be in registry.reg. "
                                 "Keys below them can be opened"),
    member<&Station::unknown>(
        "unknown", Tells::Unknown,
        "what nobody knows of the machine: members by their path (`network.arp`) and keys by full path. It "
        "is answered as if it were not there; `simulate`, `explain`, `whatif` and the page say so, and of a "
        "field that nothing else changes which entries would. Whoever fills something in takes it off the "
        "list"),
};

void readStationMembers(const JsonView& view, Station& station) {
    readMembers(view, station);
}

JsonView::Json stationMembers(const Station& station) {
    return writeMembers(station);
}

JsonView::Json collectedJson(const Collected& collected) {
    return writeMembers(collected);
}

Collected readCollected(const JsonView& view) {
    Collected collected;
    readMembers(view, collected);
    return collected;
}

MemberTexts stationMemberTexts() {
    MemberTexts texts;
    tellMembers<Station>("", texts);
    return texts;
}

MemberTexts companionTextMembers() {
    MemberTexts texts;
    tellMembers<CompanionText>("", texts);
    return texts;
}

void eachToldText(Station& station, const TextVisitor& visit) {
    eachTextOf(station, visit);
}

ToldAt toldAt(PathBelow path) {
    return toldBelow<Station>(path);
}

std::size_t ownNameIn(std::string_view dottedPath) {
    MemberPath path;
    std::size_t place = 0;
    while (place < dottedPath.size() && toldAt(path).names == Tells::Nothing) {
        const std::size_t end = std::min(dottedPath.find('.', place), dottedPath.size());
        path.emplace_back(dottedPath.substr(place, end - place));
        place = std::min(end + 1, dottedPath.size());
    }
    return toldAt(path).isMember ? place : 0;
}

}  // namespace simwin
