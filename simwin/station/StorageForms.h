// Forms of what is on drives.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "simwin/station/Forms.h"
#include "simwin/station/Station.h"

namespace simwin {

// The word for one of GetDriveTypeA's numbers, such as "cdrom"; empty for those that tell no kind of a drive.
std::string_view driveTypeWord(std::uint32_t type);

// That word, or the number.
struct DriveTypeForm : OneValue {
    static void read(const JsonView& view, std::uint32_t& type);
    static JsonView::Json write(std::uint32_t type);
    static void tell(MemberText& member, MemberTexts&);
};

// The name of a member: a drive's letter.
struct DriveLetter {
    static constexpr std::string_view kPlaceholder = "X";
    static constexpr std::string_view kMeaning = "drive's letter from A to Z";
    static bool isOne(std::string_view name) { return name.size() == 1 && name[0] >= 'A' && name[0] <= 'Z'; }
    static char read(const std::string& name, const JsonView& value);
};

// An object of drives by their letters.
template <class Value>
struct ByLetterForm {
    static constexpr bool kIsText = FormOf<Value>::kIsText;
    static void read(const JsonView& view, std::map<char, Value>& values) {
        view.eachMember([&](const std::string& name, const JsonView& value) {
            FormOf<Value>::read(value, values[DriveLetter::read(name, value)]);
        });
    }
    static JsonView::Json write(const std::map<char, Value>& values) {
        JsonView::Json object = JsonView::Json::object();
        for (const auto& [letter, value] : values)
            object[std::string(1, letter)] = FormOf<Value>::write(value);
        return object;
    }
    static void tell(MemberText& member, MemberTexts& below) { tellNamed<DriveLetter, FormOf<Value>>(member, below); }
    static void eachText(std::map<char, Value>& values, const Told& told, const TextVisitor& visit) {
        for (auto& [letter, value] : values)
            FormOf<Value>::eachText(value, told, visit);
    }
    static ToldAt at(PathBelow path, Tells tells) {
        if (path.empty())
            return {.isMember = true};
        return DriveLetter::isOne(path[0]) ? FormOf<Value>::at(path.subspan(1), tells) : ToldAt{};
    }
};
template <class Value>
struct FormOf<std::map<char, Value>> : ByLetterForm<Value> {};

// The name of a member.
struct FilePath {
    static constexpr std::string_view kPlaceholder = "PATH";
    static constexpr std::string_view kMeaning = "full path of a file, such as C:\\WINDOWS\\notepad.exe";
    static constexpr Tells kTells = Tells::OwnWords;
    static std::string read(const std::string& path, const JsonView& value);
};

struct FileVersionForm : OneValue {
    static void read(const JsonView& view, FileVersion& version);
    static JsonView::Json write(const FileVersion& version);
    static void tell(MemberText& member, MemberTexts&);
};
template <>
struct FormOf<FileVersion> : FileVersionForm {};

}  // namespace simwin
