#include "kvstation/import/HiveRegistry.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

#include "kvstation/hives/HiveKind.h"
#include "kvstation/import/HiveValues.h"
#include "kvstation/platform/Errors.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::equalNoCase;
using simwin::restBelow;

constexpr std::string_view kMachine = "HKEY_LOCAL_MACHINE";
constexpr std::string_view kSystem = "HKEY_LOCAL_MACHINE\\SYSTEM";
constexpr std::string_view kCurrentConfig = "HKEY_CURRENT_CONFIG";
constexpr std::string_view kCurrentControlSet = "CurrentControlSet";
constexpr std::string_view kConfigNumber = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\IDConfigDB";

// Of these no file is read, or they are in none.
constexpr const char* kNowhere[] = {"HKEY_LOCAL_MACHINE\\SAM", "HKEY_LOCAL_MACHINE\\SECURITY", "HKEY_USERS",
                                    "HKEY_DYN_DATA", "HKEY_PERFORMANCE_DATA"};

const Hive::SubKey* subKey(Hive& hive, Hive::Node key, std::string_view name) {
    for (const Hive::SubKey& one : hive.subKeys(key).all)
        if (equalNoCase(one.name, name))
            return &one;
    return nullptr;
}

// Of a USER.DAT: the key of the default user, or, in a profile, that of its name or all of the file.
Hive::Node oldUserKey(Hive& hive, const std::string& profile) {
    const Hive::SubKey* key = nullptr;
    if (!profile.empty())
        key = subKey(hive, hive.root(), simwin::fromUtf8Leniently(profile));
    if (key == nullptr && subKey(hive, hive.root(), "Control Panel") == nullptr)
        key = subKey(hive, hive.root(), ".DEFAULT");
    return key != nullptr ? key->node : hive.root();
}

// Of a CLASSES.DAT: where the file types begin.
Hive::Node oldClassesKey(Hive& hive) {
    const Hive::SubKey* software = subKey(hive, hive.root(), "SOFTWARE");
    const Hive::Node above = software != nullptr ? software->node : hive.root();
    const Hive::SubKey* classes = subKey(hive, above, "CLASSES");
    return classes != nullptr ? classes->node : above;
}

// A profile of Windows 9x has the root keys of a user of Windows NT, and its file types those of such a user's.
bool isKind(const OpenedHive& opened, std::string_view found, std::string_view kind) {
    const bool isOfUser = found == "NTUSER.DAT" || (found == "UsrClass.dat" && kind == "CLASSES.DAT");
    return found.empty() || found == kind || (opened.form == HiveForm::Windows9x && isOfUser);
}

}  // namespace

HiveRegistry::HiveRegistry(const HiveFolder& files) : m_isUserLeftOut(files.isUserLeftOut), m_remarks(files.remarks) {
    // The form of the file tells more than its name.
    OpenedHive system = openHive(files.system);
    m_is9x = system.form == HiveForm::Windows9x;
    if (m_is9x)
        mount9x(std::move(system), files);
    else
        mountNt(std::move(system), files);
    std::ranges::stable_sort(m_mounts, std::greater(), [](const Mount& one) { return one.root.size(); });
}

Hive* HiveRegistry::take(OpenedHive opened, std::string_view kind) {
    const std::string_view found = kindOf(*opened.hive);
    if (!isKind(opened, found, kind))
        throw Failure(opened.path + " is no " + std::string(kind) + " hive: its keys are those of " +
                      std::string(found));
    m_remarks.insert(m_remarks.end(), opened.remarks.begin(), opened.remarks.end());
    return m_hives.emplace_back(std::move(opened)).hive.get();
}

Hive* HiveRegistry::open(const std::string& path, std::string_view kind) {
    return path.empty() ? nullptr : take(openHive(path), kind);
}

void HiveRegistry::mount(std::string root, Hive* hive, Hive::Node base) {
    m_mounts.push_back({std::move(root), hive, base});
}

void HiveRegistry::mount(std::string root, Hive* hive) {
    mount(std::move(root), hive, hive != nullptr ? hive->root() : 0);
}

void HiveRegistry::mountNt(OpenedHive system, const HiveFolder& files) {
    mount(std::string(kSystem), take(std::move(system), "SYSTEM"));
    readCurrentControlSet();
    readCodePage();
    mount("HKEY_LOCAL_MACHINE\\SOFTWARE", open(files.software, "SOFTWARE"));
    mount("HKEY_USERS\\.DEFAULT", open(files.defaultUser, "NTUSER.DAT"));
    mount(std::string(kUserKeys), open(files.user, "NTUSER.DAT"));
    if (!files.user.empty())
        mount(std::string(kUserFileTypes), open(files.userClasses, "UsrClass.dat"));
    for (const char* root : kNowhere)
        mount(root, nullptr);
    std::array<char, 16> number{};
    if (const auto current = HiveValues(*this, kConfigNumber).number("CurrentConfig"))
        std::snprintf(number.data(), number.size(), "%04u", *current);
    mountCurrentConfig(std::string(kSystem) + "\\CurrentControlSet\\Hardware Profiles\\" + number.data());
}

// Windows Me has them in a file of their own, and an empty key here.
bool HiveRegistry::hasClasses() {
    const std::optional<Place> place = find(kFileTypes);
    return place && !place->hive->subKeys(place->key).all.empty();
}

void HiveRegistry::mount9x(OpenedHive system, const HiveFolder& files) {
    mount(std::string(kMachine), take(std::move(system), "SYSTEM.DAT"));
    readCodePage();
    if (Hive* classes = open(files.classes, "CLASSES.DAT"))
        mount(std::string(kFileTypes), classes, oldClassesKey(*classes));
    else if (!hasClasses())
        mount(std::string(kFileTypes), nullptr);
    Hive* defaultUser = open(files.defaultUser, "USER.DAT");
    mount("HKEY_USERS", defaultUser);
    Hive* user = files.user == files.defaultUser ? defaultUser : open(files.user, "USER.DAT");
    mount(std::string(kUserKeys), user, user != nullptr ? oldUserKey(*user, files.userName) : 0);
    for (const char* root : {"HKEY_DYN_DATA", "HKEY_PERFORMANCE_DATA"})
        mount(root, nullptr);
    mountCurrentConfig(std::string(kMachine) + "\\Config\\" +
                       HiveValues(*this, kConfigNumber).text("CurrentConfig").value_or(""));
}

// Before the hives with names of people and products are read.
void HiveRegistry::readCodePage() {
    const std::string text = HiveValues(*this, std::string(kSystem) + "\\CurrentControlSet\\Control\\Nls\\CodePage")
                                 .text("ACP")
                                 .value_or("");
    unsigned number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    m_tellsCodePage = text == std::to_string(number) && simwin::isKnownCodePage(number);
    if (m_tellsCodePage)
        simwin::useCodePage(number);
    else if (!text.empty())
        m_remarks.push_back("this Windows has the ANSI code page " + text + ", which is none of the known ones (" +
                            simwin::listOfCodePages() + "); its texts are taken for those of 1252");
}

void HiveRegistry::mountCurrentConfig(const std::string& key) {
    const std::optional<Place> place = simwin::endsWithCharacter(key, '\\') ? std::nullopt : find(key);
    mount(std::string(kCurrentConfig), place ? place->hive : nullptr, place ? place->key : 0);
}

bool HiveRegistry::hasControlSet(std::string_view name) {
    Hive& system = *m_mounts.front().hive;
    return subKey(system, system.root(), name) != nullptr;
}

// What is left of a damaged hive is of more use than nothing.
bool HiveRegistry::takeAnyControlSet() {
    constexpr std::string_view kName = "ControlSet0";
    Hive& system = *m_mounts.front().hive;
    for (const Hive::SubKey& key : system.subKeys(system.root()).all)
        if (m_controlSet.empty() && key.name.size() == kName.size() + 2 &&
            equalNoCase(std::string_view(key.name).substr(0, kName.size()), kName))
            m_controlSet = key.name;
    return !m_controlSet.empty();
}

void HiveRegistry::readCurrentControlSet() {
    const std::string& file = m_hives.front().path;
    const std::string select = std::string(kSystem) + "\\Select";
    const auto number = HiveValues(*this, select).number("Current");
    std::array<char, 24> name{};
    if (number)
        std::snprintf(name.data(), name.size(), "ControlSet%03u", *number);
    if (number && hasControlSet(name.data())) {
        m_controlSet = name.data();
        return;
    }
    Hive& system = *m_mounts.front().hive;
    const bool isDamaged = number ? !system.subKeys(system.root()).isWhole : lossAt(select, Part::Values).has_value();
    if (isDamaged && !takeAnyControlSet())
        throw Failure(file + " is a registry hive that is damaged beyond use: no control set can be read");
    if (isDamaged) {
        m_remarks.push_back(file + " is damaged where it tells the current control set; " + m_controlSet +
                            " stands in its place");
        return;
    }
    throw Failure(number ? file + " has no " + name.data() + ", which Select\\Current names as the current control set"
                         : file + " tells no current control set: it has no number Select\\Current");
}

std::optional<HiveRegistry::Place> HiveRegistry::walk(std::string_view path) {
    const auto mount = std::ranges::find_if(
        m_mounts, [&](const Mount& one) { return one.hive != nullptr && restBelow(path, one.root).has_value(); });
    if (mount == m_mounts.end())
        return std::nullopt;
    Place place{mount->hive, mount->base, mount->root, {}};
    for (std::string_view rest = *restBelow(path, mount->root); !rest.empty();) {
        const std::size_t end = std::min(simwin::findCharacter(rest, '\\'), rest.size());
        if (!goDown(place, rest.substr(0, end))) {
            place.missing = rest.substr(0, end);
            return place;
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return place;
}

std::optional<HiveRegistry::Place> HiveRegistry::find(std::string_view path) {
    std::optional<Place> place = walk(path);
    return place && place->missing.empty() && !simwin::holdsEmptyPiece(path) ? std::move(place) : std::nullopt;
}

bool HiveRegistry::goDown(Place& place, std::string_view name) const {
    const bool isAlias = !m_is9x && place.path == kSystem && equalNoCase(name, kCurrentControlSet);
    const Hive::SubKey* found = subKey(*place.hive, place.key, isAlias ? std::string_view(m_controlSet) : name);
    if (found == nullptr)
        return false;
    place.path += "\\" + (isAlias ? std::string(kCurrentControlSet) : found->name);
    place.key = found->node;
    return true;
}

// `asRoot` stands in the place of `root` in the tree.
bool HiveRegistry::copy(std::string_view path, simwin::RegistryTree& tree, std::string_view asRoot,
                        std::string_view root) {
    const std::optional<Place> place = find(path);
    if (!place)
        return false;
    const std::string as = std::string(asRoot) + place->path.substr(root.size());
    const std::optional<simwin::KeyId> key = tree.create(as);
    if (!key)
        return false;
    for (const Hive::SubKey& one : place->hive->subKeys(place->key).all)
        tree.create(as + "\\" + one.name);
    for (simwin::RegistryValue& value : place->hive->values(place->key).all)
        tree.set(*key, std::move(value));
    return true;
}

bool HiveRegistry::copyKey(std::string_view fullPath, simwin::RegistryTree& tree) {
    const std::string path = simwin::withClassesInPlace(fullPath);
    const bool isThere = copy(path, tree, "", "");
    const std::optional<std::string_view> type = restBelow(path, kFileTypes);
    if (m_is9x || !type || type->empty())
        return isThere;
    return copy(std::string(kUserFileTypes) + "\\" + std::string(*type), tree, kFileTypes, kUserFileTypes) || isThere;
}

std::optional<std::string> HiveRegistry::lossAt(std::string_view fullPath, Part part) {
    const std::optional<Place> place = walk(simwin::withClassesInPlace(fullPath));
    if (!place)
        return std::nullopt;
    if (!place->missing.empty())
        return place->hive->subKeys(place->key).isWhole ? std::nullopt
                                                        : std::optional(place->path + "\\" + place->missing);
    const bool isWhole = (part != Part::SubKeys || place->hive->subKeys(place->key).isWhole) &&
                         (part != Part::Values || place->hive->values(place->key).isWhole);
    return isWhole ? std::nullopt : std::optional(place->path);
}

std::vector<std::string> HiveRegistry::missingRoots() const {
    std::vector<std::string> roots;
    for (const Mount& mount : m_mounts)
        if (mount.hive == nullptr)
            roots.push_back(mount.root);
    return roots;
}

}  // namespace kvstation
