#include "simwin/station/StationWriter.h"

#include <algorithm>

#include "simwin/station/CollectedJson.h"
#include "simwin/station/VersionResource.h"
#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"
#include "simwin/text/JsonLayout.h"

namespace simwin {
namespace {

using Json = nlohmann::ordered_json;

Json text(std::string_view bytes) {
    if (std::any_of(bytes.begin(), bytes.end(), isControl) || !survivesUtf8(bytes))
        return Json{{"hex", hexText(bytes, ' ')}};
    return toUtf8(bytes);
}

void put(Json& object, const char* name, const OptionalText& value) {
    if (value)
        object[name] = text(*value);
}

void put(Json& object, const char* name, Json value) {
    if (!value.empty())
        object[name] = std::move(value);
}

void put(Json& object, const char* name, const std::optional<CompanionText>& value) {
    if (!value)
        return;
    if (value->result == 1 && value->terminated) {
        object[name] = text(value->text);
        return;
    }
    Json whole{{"text", text(value->text)}, {"result", value->result}};
    if (!value->terminated)
        whole["terminated"] = false;
    object[name] = std::move(whole);
}

Json version(const WindowsVersion& version) {
    Json object{{"platformId", version.platformId},
                {"major", version.major},
                {"minor", version.minor},
                {"build", version.build}};
    if (!version.servicePack.empty())
        object["servicePack"] = text(version.servicePack);
    if (version.terminalServices)
        object["terminalServices"] = true;
    return object;
}

Json user(const User& user) {
    Json object = Json::object();
    put(object, "name", user.name);
    put(object, "samCompatible", user.samCompatible);
    put(object, "displayName", user.displayName);
    put(object, "principal", user.principal);
    put(object, "network", user.network);
    put(object, "directory", user.directory);
    return object;
}

Json environment(const std::vector<Variable>& variables) {
    Json object = Json::object();
    for (const Variable& variable : variables)
        object[toProperUtf8(variable.name)] = text(variable.value);
    return object;
}

Json process(const Process& process) {
    Json object{{"id", process.id}};
    if (process.sessionId)
        object["sessionId"] = *process.sessionId;
    return object;
}

Json processors(const Processors& processors) {
    Json object{{"architecture", processors.architecture},
                {"count", processors.count},
                {"type", processors.type},
                {"level", processors.level},
                {"revision", processors.revision}};
    put(object, "currentMhz", Json(processors.currentMhz));
    return object;
}

Json driveType(std::uint32_t type) {
    constexpr std::string_view names[] = {"removable", "fixed", "remote", "cdrom", "ramdisk"};
    return type >= 2 && type <= 6 ? Json(names[type - 2]) : Json(type);
}

Json drive(const Drive& drive) {
    Json object{{"type", driveType(drive.type)}};
    put(object, "label", drive.label);
    put(object, "fileSystem", drive.fileSystem);
    if (drive.serial != 0)
        object["serial"] = drive.serial;
    if (drive.space) {
        object["total"] = drive.space->total;
        object["free"] = drive.space->free;
        if (drive.space->totalFree != drive.space->free)
            object["totalFree"] = drive.space->totalFree;
    }
    if (drive.clusters)
        object["clusters"] = {{"sectorsPerCluster", drive.clusters->sectorsPerCluster},
                              {"bytesPerSector", drive.clusters->bytesPerSector},
                              {"free", drive.clusters->free},
                              {"total", drive.clusters->total}};
    return object;
}

Json drives(const std::map<char, Drive>& all) {
    Json object = Json::object();
    for (const auto& [letter, one] : all)
        object[std::string(1, letter)] = drive(one);
    return object;
}

Json files(const std::vector<File>& all) {
    Json object = Json::object();
    for (const File& file : all) {
        Json one = Json::object();
        if (file.version)
            one["version"] = versionText(*file.version);
        if (file.resource)
            one["resource"] = {{"hex", hexText(*file.resource, ' ')}};
        object[toProperUtf8(file.path)] = std::move(one);
    }
    return object;
}

Json hosts(const std::vector<Host>& all) {
    Json object = Json::object();
    for (const Host& host : all) {
        Json one = Json::object();
        if (host.name != host.hostName)
            one["name"] = text(host.name);
        if (host.addressType != 2)
            one["addressType"] = host.addressType;
        Json addresses = Json::array();
        for (const std::string& address : host.addresses)
            addresses.push_back(address.size() == 4 ? Json(dotted(address)) : Json{{"hex", hexText(address, ' ')}});
        put(one, "addresses", std::move(addresses));
        object[toProperUtf8(host.hostName)] = std::move(one);
    }
    return object;
}

Json lanas(const std::vector<Lana>& all) {
    Json list = Json::array();
    for (const Lana& lana : all) {
        Json one{{"lana", lana.number}};
        if (lana.address)
            one["address"] = hexText(*lana.address, '-');
        list.push_back(std::move(one));
    }
    return list;
}

Json network(const StationNetwork& network) {
    Json object = Json::object();
    put(object, "hostName", network.hostName);
    put(object, "hosts", hosts(network.hosts));
    Json addresses = Json::object();
    for (const ReverseEntry& entry : network.addresses)
        addresses[entry.address] = text(entry.name);
    put(object, "addresses", std::move(addresses));
    Json arp = Json::object();
    for (const ArpEntry& entry : network.arp)
        arp[entry.address] = hexText(entry.physical, '-');
    put(object, "arp", std::move(arp));
    put(object, "netbios", lanas(network.netbios));
    put(object, "lanGroup", network.lanGroup);
    put(object, "domain", network.domain);
    return object;
}

Json session(const Session& session) {
    Json object = Json::object();
    put(object, "clientName", session.clientName);
    put(object, "clientAddress", session.clientAddress);
    if (session.id != 0)
        object["id"] = session.id;
    put(object, "domain", session.domain);
    return object;
}

Json profile(const std::vector<ProfileEntry>& entries) {
    Json object = Json::object();
    for (const ProfileEntry& entry : entries)
        object[toProperUtf8(entry.section)][toProperUtf8(entry.entry)] = text(entry.value);
    return object;
}

Json texts(const std::vector<std::string>& all) {
    Json list = Json::array();
    for (const std::string& one : all)
        list.push_back(text(one));
    return list;
}

void putMachine(Json& object, const Station& station) {
    object["codePages"] = {{"ansi", station.codePages.ansi}, {"oem", station.codePages.oem}};
    if (station.version)
        object["version"] = version(*station.version);
    if (station.keyboard)
        object["keyboard"] = {{"type", station.keyboard->type}, {"subType", station.keyboard->subType}};
    put(object, "computerName", station.computerName);
    put(object, "user", user(station.user));
    put(object, "environment", environment(station.environment));
    if (station.process)
        object["process"] = process(*station.process);
    if (station.processors)
        object["processors"] = processors(*station.processors);
    if (station.memory)
        object["memory"] = {{"physical", station.memory->physical}, {"virtual", station.memory->virtualSize}};
    put(object, "drives", drives(station.drives));
    put(object, "files", files(station.files));
}

void putSurroundings(Json& object, const Station& station) {
    put(object, "network", network(station.network));
    put(object, "session", session(station.session));
    if (station.citrix) {
        object["citrix"] = Json::object();
        put(object["citrix"], "clientName", station.citrix->clientName);
    }
    if (station.vcdVersion)
        object["vcdVersion"] = *station.vcdVersion;
    put(object, "profile", profile(station.profile));
    put(object, "missing", texts(station.missing));
    put(object, "fails", Json(station.fails));
    put(object, "deniedKeys", texts(station.deniedKeys));
    put(object, "unknown", texts(station.unknown));
}

// A null says that there is nothing, unless something is described there.
void putAbsent(Json& object, const MemberPath& path) {
    Json* place = &object;
    for (const std::string& name : path) {
        if (!place->is_object() && !place->is_null())
            return;
        place = &(*place)[name];
    }
}

}  // namespace

Json stationJson(const Station& station) {
    const CodePageScope scope(station.codePages.ansi);
    Json object = Json::object();
    if (!station.description.empty())
        object["description"] = station.description;
    if (station.collected)
        object["collected"] = collectedJson(*station.collected);
    putMachine(object, station);
    putSurroundings(object, station);
    for (const MemberPath& path : station.absent)
        putAbsent(object, path);
    return object;
}

std::string writeStation(const Station& station) {
    return layOut(stationJson(station));
}

}  // namespace simwin
