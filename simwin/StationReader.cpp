#include "simwin/StationReader.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <set>
#include <span>
#include <utility>

#include "simwin/Address.h"
#include "simwin/CallTable.h"
#include "simwin/CodePage.h"
#include "simwin/JsonView.h"
#include "simwin/RegistryReader.h"

namespace simwin {
namespace {

constexpr std::size_t kLargestFile = std::size_t{16} << 20;
constexpr std::size_t kLongestPhysicalAddress = 16;
constexpr std::size_t kLanaAddressSize = 6;

using Read = std::function<void(const JsonView&)>;

struct Member {
    std::string_view name;
    Read read;
};

void readMembers(const JsonView& object, std::initializer_list<Member> members) {
    object.eachMember([&](const std::string& name, const JsonView& value) {
        for (const Member& member : members)
            if (member.name == name)
                return member.read(value);
        value.fail("is not known");
    });
}

template <class Number>
Read into(Number& place) requires std::is_integral_v<Number> {
    return [&place](const JsonView& value) { place = value.number<Number>(); };
}

Read into(bool& place) {
    return [&place](const JsonView& value) { place = value.flag(); };
}

bool isHexDigit(char character) {
    return std::string_view("0123456789abcdefABCDEF").find(character) != std::string_view::npos;
}

// "41 42", "41-42" or "4142".
std::string readHex(const JsonView& view) {
    const std::string text = view.utf8();
    std::string bytes;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ' || text[i] == '-') {
            ++i;
            continue;
        }
        if (i + 1 == text.size() || !isHexDigit(text[i]) || !isHexDigit(text[i + 1]))
            view.fail("is no row of bytes of two hexadecimal digits each");
        unsigned byte = 0;
        std::from_chars(text.data() + i, text.data() + i + 2, byte, 16);
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
        i += 2;
    }
    return bytes;
}

std::string toCodePage(const std::string& utf8, const JsonView& view) {
    Utf8Error error{};
    const std::optional<std::string> bytes = fromUtf8(utf8, error);
    if (!bytes)
        view.fail(error.outsideCodePage ? "holds a character that code page 1252 does not have" : "is no UTF-8 text");
    return *bytes;
}

// A text, or its bytes as {"hex": "41 42"}.
std::string readText(const JsonView& view) {
    if (!view.isObject())
        return toCodePage(view.utf8(), view);
    std::string bytes;
    readMembers(view, {{"hex", [&](const JsonView& hex) { bytes = readHex(hex); }}});
    return bytes;
}

Read into(std::string& place) {
    return [&place](const JsonView& value) { place = readText(value); };
}

Read into(OptionalText& place) {
    return [&place](const JsonView& value) { place = readText(value); };
}

// A companion's text, or {"text": ..., "result": 0, "terminated": false}.
Read into(std::optional<CompanionText>& place) {
    return [&place](const JsonView& value) {
        CompanionText& text = place.emplace();
        bool isRaw = !value.isObject();
        if (!isRaw)
            value.eachMember([&](const std::string& name, const JsonView&) { isRaw = isRaw || name == "hex"; });
        if (isRaw)
            text.text = readText(value);
        else
            readMembers(
                value,
                {{"text", into(text.text)}, {"result", into(text.result)}, {"terminated", into(text.terminated)}});
    };
}

void readCodePages(const JsonView& view, CodePages& pages) {
    const auto readAnsi = [&](const JsonView& value) {
        pages.ansi = value.number<unsigned>();
        if (pages.ansi != kAnsiCodePage)
            value.fail("only 1252 is supported");
    };
    readMembers(view, {{"ansi", readAnsi}, {"oem", into(pages.oem)}});
}

void readVersion(const JsonView& view, WindowsVersion& version) {
    readMembers(view, {{"platformId", into(version.platformId)},
                       {"major", into(version.major)},
                       {"minor", into(version.minor)},
                       {"build", into(version.build)},
                       {"servicePack", into(version.servicePack)},
                       {"terminalServices", into(version.terminalServices)}});
}

void readUser(const JsonView& view, User& user) {
    readMembers(view, {{"name", into(user.name)},
                       {"samCompatible", into(user.samCompatible)},
                       {"displayName", into(user.displayName)},
                       {"principal", into(user.principal)},
                       {"network", into(user.network)},
                       {"directory", into(user.directory)}});
}

void readEnvironment(const JsonView& view, std::vector<Variable>& variables) {
    view.eachMember([&](const std::string& name, const JsonView& value) {
        if (name.empty() || name.find('=') != std::string::npos)
            value.fail("is no variable's name");
        variables.push_back({toCodePage(name, value), readText(value)});
    });
}

void readProcess(const JsonView& view, Process& process) {
    readMembers(view, {{"id", into(process.id)}, {"sessionId", [&](const JsonView& value) {
                                                      process.sessionId = value.number<std::uint32_t>();
                                                  }}});
}

void readProcessors(const JsonView& view, Processors& processors) {
    const auto readClocks = [&](const JsonView& clocks) {
        clocks.eachItem([&](const JsonView& mhz) { processors.currentMhz.push_back(mhz.number<std::uint32_t>()); });
    };
    readMembers(view, {{"architecture", into(processors.architecture)},
                       {"count", into(processors.count)},
                       {"type", into(processors.type)},
                       {"level", into(processors.level)},
                       {"revision", into(processors.revision)},
                       {"currentMhz", readClocks}});
}

std::uint32_t readDriveType(const JsonView& view) {
    if (!view.isText())
        return view.number<std::uint32_t>();
    const std::string name = view.utf8();
    constexpr std::string_view names[] = {"removable", "fixed", "remote", "cdrom", "ramdisk"};
    for (std::size_t i = 0; i < std::size(names); ++i)
        if (names[i] == name)
            return static_cast<std::uint32_t>(i + 2);
    view.fail("is none of removable, fixed, remote, cdrom, ramdisk and no number");
}

void readClusters(const JsonView& view, Clusters& clusters) {
    readMembers(view, {{"sectorsPerCluster", into(clusters.sectorsPerCluster)},
                       {"bytesPerSector", into(clusters.bytesPerSector)},
                       {"free", into(clusters.free)},
                       {"total", into(clusters.total)}});
}

void readDrive(const JsonView& view, Drive& drive) {
    Space space;
    bool hasTotal = false;
    bool hasTotalFree = false;
    readMembers(
        view, {{"type", [&](const JsonView& value) { drive.type = readDriveType(value); }},
               {"label", into(drive.label)},
               {"fileSystem", into(drive.fileSystem)},
               {"serial", into(drive.serial)},
               {"total", [&](const JsonView& value) { space.total = value.number<std::uint64_t>(), hasTotal = true; }},
               {"free", into(space.free)},
               {"totalFree",
                [&](const JsonView& value) { space.totalFree = value.number<std::uint64_t>(), hasTotalFree = true; }},
               {"clusters", [&](const JsonView& value) { readClusters(value, drive.clusters.emplace()); }}});
    if (!hasTotalFree)
        space.totalFree = space.free;
    if (hasTotal)
        drive.space = space;
}

void readDrives(const JsonView& view, std::map<char, Drive>& drives) {
    view.eachMember([&](const std::string& name, const JsonView& value) {
        if (name.size() != 1 || name[0] < 'A' || name[0] > 'Z')
            value.fail("is no drive's letter from A to Z");
        readDrive(value, drives[name[0]]);
    });
}

FileVersion readFileVersion(const JsonView& view) {
    const std::string text = view.utf8();
    FileVersion version{};
    const char* place = text.data();
    const char* end = text.data() + text.size();
    for (std::size_t i = 0; i < version.size(); ++i) {
        if (i != 0 && (place == end || *place++ != '.'))
            view.fail("is no version of four numbers up to 65535, such as 10.200.2650.0");
        const auto [next, error] = std::from_chars(place, end, version[i]);
        if (error != std::errc())
            view.fail("is no version of four numbers up to 65535, such as 10.200.2650.0");
        place = next;
    }
    if (place != end)
        view.fail("is no version of four numbers up to 65535, such as 10.200.2650.0");
    return version;
}

void readFiles(const JsonView& view, std::vector<File>& files) {
    view.eachMember([&](const std::string& path, const JsonView& value) {
        File file;
        file.path = toCodePage(path, value);
        if (path.size() < 4 || path[1] != ':' || path[2] != '\\' || path.ends_with('\\'))
            value.fail("is no full path of a file, such as C:\\WINDOWS\\notepad.exe");
        readMembers(value, {{"version", [&](const JsonView& version) { file.version = readFileVersion(version); }},
                            {"resource", into(file.resource)}});
        files.push_back(std::move(file));
    });
}

// A dotted address, as it stands.
std::string checkDotted(const std::string& text, const JsonView& view) {
    const std::optional<std::string> bytes = parseDotted(text);
    if (!bytes)
        view.fail("is no IPv4 address such as 10.0.0.5");
    return dotted(*bytes);
}

// A dotted address' bytes, or raw ones as {"hex": ...}.
std::string readAddressBytes(const JsonView& view) {
    if (view.isObject())
        return readText(view);
    return *parseDotted(checkDotted(view.utf8(), view));
}

void readHosts(const JsonView& view, std::vector<Host>& hosts) {
    view.eachMember([&](const std::string& name, const JsonView& value) {
        Host host;
        host.hostName = toCodePage(name, value);
        host.name = host.hostName;
        const auto readAddresses = [&](const JsonView& list) {
            list.eachItem([&](const JsonView& address) {
                host.addresses.push_back(readAddressBytes(address));
                if (host.addresses.back().size() != host.addresses.front().size())
                    address.fail("is not as long as the first address");
            });
        };
        readMembers(value,
                    {{"name", into(host.name)}, {"addressType", into(host.addressType)}, {"addresses", readAddresses}});
        hosts.push_back(std::move(host));
    });
}

void readReverseEntries(const JsonView& view, std::vector<ReverseEntry>& entries) {
    view.eachMember([&](const std::string& address, const JsonView& value) {
        entries.push_back({checkDotted(address, value), readText(value)});
    });
}

std::string readPhysicalAddress(const JsonView& view, std::size_t least, std::size_t most) {
    std::string bytes = view.isObject() ? readText(view) : readHex(view);
    if (bytes.size() < least || bytes.size() > most)
        view.fail("is no physical address of " + (least == most ? "" : std::to_string(least) + " to ") +
                  std::to_string(most) + " bytes, such as 00-0C-29-AB-CD-EF");
    return bytes;
}

void readArp(const JsonView& view, std::vector<ArpEntry>& entries) {
    view.eachMember([&](const std::string& address, const JsonView& value) {
        entries.push_back({checkDotted(address, value), readPhysicalAddress(value, 0, kLongestPhysicalAddress)});
    });
}

void readNetbios(const JsonView& view, std::vector<Lana>& lanas) {
    view.eachItem([&](const JsonView& item) {
        Lana lana;
        readMembers(item, {{"lana", into(lana.number)}, {"address", [&](const JsonView& value) {
                                                             lana.address = readPhysicalAddress(value, kLanaAddressSize,
                                                                                                kLanaAddressSize);
                                                         }}});
        lanas.push_back(std::move(lana));
    });
}

void readNetwork(const JsonView& view, StationNetwork& network) {
    readMembers(view, {{"hostName", into(network.hostName)},
                       {"hosts", [&](const JsonView& value) { readHosts(value, network.hosts); }},
                       {"addresses", [&](const JsonView& value) { readReverseEntries(value, network.addresses); }},
                       {"arp", [&](const JsonView& value) { readArp(value, network.arp); }},
                       {"netbios", [&](const JsonView& value) { readNetbios(value, network.netbios); }},
                       {"lanGroup", into(network.lanGroup)},
                       {"domain", into(network.domain)}});
}

void readSession(const JsonView& view, Session& session) {
    readMembers(view, {{"clientName", into(session.clientName)},
                       {"clientAddress", into(session.clientAddress)},
                       {"domain", into(session.domain)},
                       {"id", into(session.id)}});
}

void readProfile(const JsonView& view, std::vector<ProfileEntry>& profile) {
    view.eachMember([&](const std::string& section, const JsonView& entries) {
        entries.eachMember([&](const std::string& entry, const JsonView& value) {
            profile.push_back({toCodePage(section, entries), toCodePage(entry, value), readText(value)});
        });
    });
}

Read into(std::vector<std::string>& place) {
    return [&place](const JsonView& list) {
        list.eachItem([&](const JsonView& item) { place.push_back(readText(item)); });
    };
}

bool isKnownCall(std::string_view name) {
    const std::span<const CallEntry> table = callTable();
    return std::any_of(table.begin(), table.end(), [name](const CallEntry& call) { return call.name == name; });
}

void readFails(const JsonView& view, std::map<std::string, std::uint32_t, std::less<>>& fails) {
    view.eachMember([&](const std::string& call, const JsonView& value) {
        if (!isKnownCall(call))
            value.fail("is no call that the module makes");
        fails[call] = value.number<std::uint32_t>();
        if (fails[call] == 0)
            value.fail("is no error");
    });
}

// "wsock32.dll" or "netapi32.dll!NetWkstaGetInfo".
void readMissing(const JsonView& view, std::vector<std::string>& missing) {
    view.eachItem([&](const JsonView& item) {
        const std::string entry = item.utf8();
        const std::size_t mark = entry.find('!');
        const std::string_view library = std::string_view(entry).substr(0, mark);
        if (!findLibrary(library))
            item.fail("names no library that the module uses");
        if (mark != std::string::npos && findCall(library, std::string_view(entry).substr(mark + 1)) == nullptr)
            item.fail("names no function that the module looks up in that library");
        missing.push_back(entry);
    });
}

void readAll(const JsonView& view, Station& station) {
    readMembers(view,
                {{"description", [&](const JsonView& value) { station.description = value.utf8(); }},
                 {"codePages", [&](const JsonView& value) { readCodePages(value, station.codePages); }},
                 {"version", [&](const JsonView& value) { readVersion(value, station.version.emplace()); }},
                 {"keyboard",
                  [&](const JsonView& value) {
                      Keyboard& keyboard = station.keyboard.emplace();
                      readMembers(value, {{"type", into(keyboard.type)}, {"subType", into(keyboard.subType)}});
                  }},
                 {"computerName", into(station.computerName)},
                 {"user", [&](const JsonView& value) { readUser(value, station.user); }},
                 {"environment", [&](const JsonView& value) { readEnvironment(value, station.environment); }},
                 {"process", [&](const JsonView& value) { readProcess(value, station.process.emplace()); }},
                 {"processors", [&](const JsonView& value) { readProcessors(value, station.processors.emplace()); }},
                 {"memory",
                  [&](const JsonView& value) {
                      Memory& memory = station.memory.emplace();
                      readMembers(value, {{"physical", into(memory.physical)}, {"virtual", into(memory.virtualSize)}});
                  }},
                 {"drives", [&](const JsonView& value) { readDrives(value, station.drives); }},
                 {"files", [&](const JsonView& value) { readFiles(value, station.files); }},
                 {"network", [&](const JsonView& value) { readNetwork(value, station.network); }},
                 {"session", [&](const JsonView& value) { readSession(value, station.session); }},
                 {"citrix",
                  [&](const JsonView& value) {
                      readMembers(value, {{"clientName", into(station.citrix.emplace().clientName)}});
                  }},
                 {"vcdVersion", [&](const JsonView& value) { station.vcdVersion = value.number<int>(); }},
                 {"profile", [&](const JsonView& value) { readProfile(value, station.profile); }},
                 {"missing", [&](const JsonView& value) { readMissing(value, station.missing); }},
                 {"fails", [&](const JsonView& value) { readFails(value, station.fails); }},
                 {"deniedKeys", into(station.deniedKeys)}});
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw ReadError(path.string() + ": cannot be opened");
    std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad())
        throw ReadError(path.string() + ": cannot be read");
    return content;
}

void checkDeniedKeys(const Station& station, const std::string& fileName) {
    for (std::size_t i = 0; i < station.deniedKeys.size(); ++i)
        if (!station.registry.find(station.deniedKeys[i]))
            throw ReadError(fileName + ": /deniedKeys/" + std::to_string(i) + ": registry.reg has no such key");
}

// The parser itself takes any depth, and the last of several members of one name.
class JsonGuard {
  public:
    explicit JsonGuard(const std::string& fileName) : m_fileName(fileName) {}

    bool operator()(int depth, JsonView::Json::parse_event_t event, const JsonView::Json& parsed) {
        using Event = JsonView::Json::parse_event_t;
        if (depth > kDeepestJson)
            throw ReadError(m_fileName + ": nested deeper than " + std::to_string(kDeepestJson) + " levels");
        if (event == Event::object_start)
            m_names.emplace_back();
        else if (event == Event::object_end)
            m_names.pop_back();
        else if (event == Event::key && !m_names.back().insert(parsed.get<std::string>()).second)
            throw ReadError(m_fileName + ": " + parsed.dump() + " stands twice in one object");
        return true;
    }

  private:
    static constexpr int kDeepestJson = 16;

    const std::string& m_fileName;
    std::vector<std::set<std::string>> m_names;
};

JsonView::Json parseJson(std::string_view content, const std::string& fileName) {
    try {
        return JsonView::Json::parse(content, JsonGuard(fileName));
    } catch (const JsonView::Json::exception& error) {
        // Without the name of the exception, which stands in brackets before the text.
        const std::string_view what = error.what();
        throw ReadError(fileName + ": " + std::string(what.substr(what.find("] ") + 2)));
    }
}

}  // namespace

Station parseStation(std::string_view content, const std::string& fileName) {
    if (content.size() > kLargestFile)
        throw ReadError(fileName + ": larger than 16 MiB");
    const JsonView::Json json = parseJson(content, fileName);
    Station station;
    readAll(JsonView(json, fileName, ""), station);
    return station;
}

Station readStation(const std::filesystem::path& folder) {
    const std::filesystem::path description = folder / "station.json";
    const std::filesystem::path registry = folder / "registry.reg";
    Station station = parseStation(readFile(description), description.string());
    station.registry = readRegistry(readFile(registry), registry.string());
    checkDeniedKeys(station, description.string());
    return station;
}

}  // namespace simwin
