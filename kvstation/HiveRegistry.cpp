#include "kvstation/HiveRegistry.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "kvstation/Errors.h"
#include "kvstation/HiveValues.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using simwin::equalNoCase;
using simwin::restBelow;

constexpr std::string_view kSystem = "HKEY_LOCAL_MACHINE\\SYSTEM";
constexpr std::string_view kSoftware = "HKEY_LOCAL_MACHINE\\SOFTWARE";
constexpr std::string_view kDefaultUser = "HKEY_USERS\\.DEFAULT";
constexpr std::string_view kUser = "HKEY_CURRENT_USER";
constexpr std::string_view kCurrentControlSet = "CurrentControlSet";

std::unique_ptr<HiveFile> openHive(const std::string& path) {
    return path.empty() ? nullptr : std::make_unique<HiveFile>(path);
}

}  // namespace

HiveRegistry::HiveRegistry(const HiveFolder& files) {
    m_mounts.push_back({std::string(kSystem), openHive(files.system)});
    m_mounts.push_back({std::string(kSoftware), openHive(files.software)});
    m_mounts.push_back({std::string(kDefaultUser), openHive(files.defaultUser)});
    m_mounts.push_back({std::string(kUser), openHive(files.user)});
    readCurrentControlSet();
}

void HiveRegistry::readCurrentControlSet() {
    const std::string& file = m_mounts.front().file->path();
    const auto number = HiveValues(*this, std::string(kSystem) + "\\Select").number("Current");
    if (!number)
        throw Failure(file + " tells no current control set: it has no number Select\\Current");
    std::array<char, 24> name{};
    std::snprintf(name.data(), name.size(), "ControlSet%03u", *number);
    m_controlSet = name.data();
    if (!find(std::string(kSystem) + "\\" + m_controlSet))
        throw Failure(file + " has no " + m_controlSet + ", which Select\\Current names as the current control set");
}

std::optional<HiveRegistry::Place> HiveRegistry::find(std::string_view path) {
    const auto mount = std::ranges::find_if(
        m_mounts, [&](const Mount& one) { return one.file && restBelow(path, one.root).has_value(); });
    if (mount == m_mounts.end())
        return std::nullopt;
    Place place{mount->file.get(), mount->file->root(), mount->root};
    for (std::string_view rest = *restBelow(path, mount->root); !rest.empty();) {
        const std::size_t end = std::min(rest.find('\\'), rest.size());
        if (!goDown(place, rest.substr(0, end)))
            return std::nullopt;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return place;
}

bool HiveRegistry::goDown(Place& place, std::string_view name) const {
    const bool isAlias = place.path == kSystem && equalNoCase(name, kCurrentControlSet);
    for (const HiveFile::SubKey& subKey : place.file->subKeys(place.key)) {
        if (!equalNoCase(subKey.name, isAlias ? std::string_view(m_controlSet) : name))
            continue;
        place.key = subKey.node;
        place.path += "\\" + (isAlias ? std::string(kCurrentControlSet) : subKey.name);
        return true;
    }
    return false;
}

bool HiveRegistry::copyKey(std::string_view fullPath, simwin::RegistryTree& tree) {
    const std::optional<Place> place = find(simwin::withClassesInPlace(fullPath));
    const std::optional<simwin::KeyId> key = place ? tree.create(place->path) : std::nullopt;
    if (!key)
        return false;
    for (const HiveFile::SubKey& subKey : place->file->subKeys(place->key))
        tree.create(place->path + "\\" + subKey.name);
    for (simwin::RegistryValue& value : place->file->values(place->key))
        tree.set(*key, std::move(value));
    return true;
}

std::vector<std::string> HiveRegistry::missingRoots() const {
    std::vector<std::string> roots;
    for (const Mount& mount : m_mounts)
        if (!mount.file)
            roots.push_back(mount.root);
    return roots;
}

std::vector<std::string> HiveRegistry::dirtyFiles() const {
    std::vector<std::string> files;
    for (const Mount& mount : m_mounts)
        if (mount.file && mount.file->isDirty())
            files.push_back(mount.file->path());
    return files;
}

}  // namespace kvstation
