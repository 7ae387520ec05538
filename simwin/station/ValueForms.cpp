#include "simwin/station/ValueForms.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <span>

#include "simwin/calls/CallTable.h"
#include "simwin/text/CodePage.h"

namespace simwin {
namespace {

constexpr const char* kTimeMeaning = "time such as 2026-11-22T12:00:00Z";
constexpr std::string_view kFormOfTime = "dddd-dd-ddTdd:dd:ddZ";  // d: a digit
constexpr std::size_t kLongestRelease = 32;

bool hasFormOfTime(std::string_view text) {
    return std::ranges::equal(text, kFormOfTime, [](char character, char wanted) {
        return wanted == 'd' ? isAsciiDigit(character) : character == wanted;
    });
}

unsigned numberAt(std::string_view text, std::size_t place, std::size_t length) {
    unsigned number = 0;
    std::from_chars(text.data() + place, text.data() + place + length, number);
    return number;
}

bool isTime(std::string_view text) {
    if (!hasFormOfTime(text))
        return false;
    const std::chrono::year_month_day day{std::chrono::year(static_cast<int>(numberAt(text, 0, 4))),
                                          std::chrono::month(numberAt(text, 5, 2)),
                                          std::chrono::day(numberAt(text, 8, 2))};
    return day.ok() && numberAt(text, 11, 2) < 24 && numberAt(text, 14, 2) < 60 && numberAt(text, 17, 2) < 60;
}

bool isRelease(std::string_view text) {
    const bool isNumbers = std::ranges::all_of(text, [](char c) { return isAsciiDigit(c) || c == '.'; });
    return isNumbers && !text.empty() && text.size() <= kLongestRelease && isAsciiDigit(text.front()) &&
           isAsciiDigit(text.back()) && text.find("..") == std::string_view::npos;
}

std::string releaseMeaning() {
    return "version such as 1.2.0 of at most " + std::to_string(kLongestRelease) + " characters";
}

std::string codePageMeaning() {
    return "the known code pages: " + listOfCodePages();
}

bool isKnownCall(std::string_view name) {
    return std::ranges::any_of(callTable(), [name](const CallEntry& call) { return call.name == name; });
}

}  // namespace

void TimeForm::read(const JsonView& view, std::string& time) {
    time = view.utf8();
    if (!isTime(time))
        view.fail("is no " + std::string(kTimeMeaning));
}

void TimeForm::tell(MemberText& member, MemberTexts&) {
    member.value = kTimeMeaning;
}

void ReleaseForm::read(const JsonView& view, std::string& version) {
    version = view.utf8();
    if (!isRelease(version))
        view.fail("is no " + releaseMeaning());
}

void ReleaseForm::tell(MemberText& member, MemberTexts&) {
    member.value = releaseMeaning();
}

void AnsiCodePageForm::read(const JsonView& view, unsigned& codePage) {
    codePage = view.number<unsigned>();
    if (!isKnownCodePage(codePage))
        view.fail("is none of " + codePageMeaning());
}

void AnsiCodePageForm::tell(MemberText& member, MemberTexts&) {
    member.value = "one of " + codePageMeaning();
}

std::string VariableName::read(const std::string& name, const JsonView& value) {
    if (name.empty() || name.find('=') != std::string::npos)
        value.fail("is no " + std::string(kMeaning));
    return toCodePage(name, value);
}

void ProfileForm::read(const JsonView& view, std::vector<ProfileEntry>& profile) {
    view.eachMember([&](const std::string& section, const JsonView& entries) {
        entries.eachMember([&](const std::string& entry, const JsonView& value) {
            profile.push_back({toCodePage(section, entries), toCodePage(entry, value), readText(value)});
        });
    });
}

JsonView::Json ProfileForm::write(const std::vector<ProfileEntry>& profile) {
    JsonView::Json object = JsonView::Json::object();
    for (const ProfileEntry& entry : profile)
        object[toProperUtf8(entry.section)][toProperUtf8(entry.entry)] = TextForm::write(entry.value);
    return object;
}

void ProfileForm::tell(MemberText& member, MemberTexts& below) {
    member.path += ".SECTION.ENTRY";
    TextForm::tell(member, below);
}

void ProfileForm::eachText(std::vector<ProfileEntry>& profile, const Told& told, const TextVisitor& visit) {
    for (ProfileEntry& entry : profile) {
        visit(entry.value, {told.tells, entry.entry});
        visit(entry.section, {Tells::OwnName, {}});
        visit(entry.entry, {Tells::OwnName, {}});
    }
}

ToldAt ProfileForm::at(PathBelow path, Tells tells) {
    if (path.size() < 2)
        return {.isMember = true, .names = Tells::OwnName};
    return {.isMember = path.size() == 2, .text = tells};
}

void MissingNameForm::read(const JsonView& view, std::string& name) {
    name = view.utf8();
    const std::size_t mark = name.find('!');
    const std::string_view library = std::string_view(name).substr(0, mark);
    if (!findLibrary(library))
        view.fail("names no library that the module uses");
    if (mark != std::string::npos && findCall(library, std::string_view(name).substr(mark + 1)) == nullptr)
        view.fail("names no function that the module looks up in that library");
}

void MissingNameForm::tell(MemberText& member, MemberTexts&) {
    member.value = "library that the module uses, or LIBRARY!FUNCTION";
}

void CallErrorsForm::read(const JsonView& view, CallErrors& errors) {
    view.eachMember([&](const std::string& call, const JsonView& value) {
        if (!isKnownCall(call))
            value.fail("is no call that the module makes");
        NumberForm<std::uint32_t>::read(value, errors[call]);
        if (errors[call] == 0)
            value.fail("is no error");
    });
}

void CallErrorsForm::tell(MemberText& member, MemberTexts& below) {
    member.path += ".CALL";
    NumberForm<std::uint32_t>::tell(member, below);
    member.value += ", but 0; CALL: call that the module makes";
}

ToldAt CallErrorsForm::at(PathBelow path, Tells) {
    return {.isMember = path.empty() || (path.size() == 1 && isKnownCall(path[0]))};
}

}  // namespace simwin
