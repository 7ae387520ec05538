#include "simwin/station/StorageForms.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "simwin/text/CodePage.h"

namespace simwin {
namespace {

constexpr std::string_view kDriveTypes[] = {"removable", "fixed", "remote", "cdrom", "ramdisk"};
constexpr std::uint32_t kFirstDriveType = 2;  // DRIVE_REMOVABLE

std::string driveTypeNames() {
    std::string names;
    for (const std::string_view name : kDriveTypes)
        names += (names.empty() ? "" : ", ") + std::string(name);
    return names;
}

constexpr const char* kVersionMeaning = "version of four numbers up to 65535, such as 10.200.2650.0";

// A number, behind a point unless it is the first one; null when the text does not go on so.
const char* readPart(const char* place, const char* end, bool isFirst, std::uint16_t& part) {
    if (!isFirst && (place == end || *place++ != '.'))
        return nullptr;
    const auto [next, error] = std::from_chars(place, end, part);
    return error == std::errc() ? next : nullptr;
}

}  // namespace

std::string_view driveTypeWord(std::uint32_t type) {
    const std::uint32_t index = type - kFirstDriveType;  // of a smaller type a large one
    return index < std::size(kDriveTypes) ? kDriveTypes[index] : std::string_view();
}

void DriveTypeForm::read(const JsonView& view, std::uint32_t& type) {
    if (!view.isText())
        return NumberForm<std::uint32_t>::read(view, type);
    const auto* found = std::ranges::find(kDriveTypes, view.utf8());
    if (found == std::end(kDriveTypes))
        view.fail("is none of " + driveTypeNames() + " and no number");
    type = kFirstDriveType + static_cast<std::uint32_t>(found - kDriveTypes);
}

JsonView::Json DriveTypeForm::write(std::uint32_t type) {
    const std::string_view word = driveTypeWord(type);
    return word.empty() ? JsonView::Json(type) : JsonView::Json(word);
}

void DriveTypeForm::tell(MemberText& member, MemberTexts&) {
    member.value = driveTypeNames() + ", or the number";
}

char DriveLetter::read(const std::string& name, const JsonView& value) {
    if (!isOne(name))
        value.fail("is no " + std::string(kMeaning));
    return name[0];
}

std::string FilePath::read(const std::string& path, const JsonView& value) {
    std::string bytes = toCodePage(path, value);
    if (path.size() < 4 || path[1] != ':' || path[2] != '\\' || endsWithCharacter(path, '\\'))
        value.fail("is no " + std::string(kMeaning));
    return bytes;
}

void FileVersionForm::read(const JsonView& view, FileVersion& version) {
    const std::string text = view.utf8();
    const char* const end = text.data() + text.size();
    const char* place = text.data();
    for (std::size_t i = 0; i < version.size() && place != nullptr; ++i)
        place = readPart(place, end, i == 0, version[i]);
    if (place != end)
        view.fail("is no " + std::string(kVersionMeaning));
}

JsonView::Json FileVersionForm::write(const FileVersion& version) {
    return versionText(version);
}

void FileVersionForm::tell(MemberText& member, MemberTexts&) {
    member.value = kVersionMeaning;
}

}  // namespace simwin
