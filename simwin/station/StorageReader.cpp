#include "simwin/station/StorageReader.h"

#include <charconv>
#include <iterator>
#include <utility>

#include "simwin/station/MemberReaders.h"

namespace simwin {
namespace {

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

}  // namespace

void readDrives(const JsonView& view, std::map<char, Drive>& drives) {
    view.eachMember([&](const std::string& name, const JsonView& value) {
        if (name.size() != 1 || name[0] < 'A' || name[0] > 'Z')
            value.fail("is no drive's letter from A to Z");
        readDrive(value, drives[name[0]]);
    });
}

void readFiles(const JsonView& view, std::vector<File>& files) {
    view.eachMember([&](const std::string& path, const JsonView& value) {
        File file;
        file.path = toCodePage(path, value);
        if (path.size() < 4 || path[1] != ':' || path[2] != '\\' || endsWithCharacter(path, '\\'))
            value.fail("is no full path of a file, such as C:\\WINDOWS\\notepad.exe");
        readMembers(value, {{"version", [&](const JsonView& version) { file.version = readFileVersion(version); }},
                            {"resource", into(file.resource)}});
        files.push_back(std::move(file));
    });
}

}  // namespace simwin
