// Names of user and computer; variables and profile entries.
#include <cstring>
#include <string>

#include "tests/conformance/Arrangement.h"
#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

constexpr std::size_t kAmple = 257;

struct NameRules {
    DWORD tooSmall;         // the error of a buffer that is too small
    bool countsTerminator;  // in the size that success tells
};

// A function that fills a name into a buffer with its size, whatever the name is.
template <class Ask>
void checkName(Suite& suite, const Check& check, const NameRules& rules, Ask ask) {
    Room whole(kAmple);
    DWORD size = kAmple;
    check.equal("room enough: result", ask(whole.data(), &size), TRUE);
    const auto length = static_cast<DWORD>(whole.text().size());
    const DWORD told = length + (rules.countsTerminator ? 1 : 0);
    check.holds("room enough: a name", length > 0);
    check.equal("room enough: size", size, told);
    check.holds("room enough: nothing is written behind it", whole.isUntouchedFrom(length + 1));
    Room exact(length + 1);
    size = length + 1;
    const auto full = suite.make([&] { return ask(exact.data(), &size); });
    check.equal("exactly full: result", full.result, TRUE);
    check.text("exactly full: name", exact.text(), whole.text());
    check.equal("exactly full: size", size, told);
    check.holds("exactly full: nothing is written behind it", exact.isUntouchedBehind());
    for (const DWORD room : {length, DWORD{1}, DWORD{0}}) {
        const std::string at = room == length ? "one byte short: " : "room for " + std::to_string(room) + ": ";
        Room small(room);
        size = room;
        const auto made = suite.make([&] { return ask(small.data(), &size); });
        check.equal(at + "result", made.result, FALSE);
        check.equal(at + "error", made.error, rules.tooSmall);
        check.equal(at + "size needed", size, length + 1);
        check.holds(at + "nothing is written behind the room", small.isUntouchedBehind());
    }
    size = 0;
    const auto asked = suite.make([&] { return ask(nullptr, &size); });
    check.equal("no buffer: result", asked.result, FALSE);
    check.equal("no buffer: error", asked.error, rules.tooSmall);
    check.equal("no buffer: size needed", size, length + 1);
}

void testUserName(Suite& suite) {
    const Check check = suite.of("GetUserNameA");
    checkName(suite, check, {ERROR_INSUFFICIENT_BUFFER, true},
              [](char* buffer, DWORD* size) { return GetUserNameA(buffer, size); });
}

void testComputerName(Suite& suite) {
    const Check check = suite.of("GetComputerNameA");
    checkName(suite, check, {ERROR_BUFFER_OVERFLOW, false},
              [](char* buffer, DWORD* size) { return GetComputerNameA(buffer, size); });
    Room name(kAmple);
    DWORD size = kAmple;
    GetComputerNameA(name.data(), &size);
    check.holds("no longer than 15 letters", size <= 15);
}

void testUserNameEx(Suite& suite) {
    const Check check = suite.of("GetUserNameExA");
    checkName(suite, check, {ERROR_MORE_DATA, false},
              [](char* buffer, DWORD* size) -> int { return GetUserNameExA(NameSamCompatible, buffer, size); });
    Room whole(kAmple);
    ULONG size = kAmple;
    GetUserNameExA(NameSamCompatible, whole.data(), &size);
    Room user(kAmple);
    DWORD userSize = kAmple;
    GetUserNameA(user.data(), &userSize);
    const std::string all(whole.text());
    check.text("the account's name stands behind the backslash", all.substr(all.find('\\') + 1), user.text());
    size = kAmple;
    const auto none = suite.make([&]() -> int { return GetUserNameExA(NameUnknown, whole.data(), &size); });
    check.equal("an unknown form: result", none.result, FALSE);
}

void testVariable(Suite& suite) {
    const Check check = suite.of("GetEnvironmentVariableA");
    for (const DescribedVariable& variable : describedVariables()) {
        const std::string at = variable.name + ": ";
        const auto length = static_cast<DWORD>(variable.value.size());
        const char* name = variable.name.c_str();
        check.equal(at + "asked for its size", GetEnvironmentVariableA(name, nullptr, 0), length + 1);
        Room exact(length + 1);
        const auto made = suite.make([&] { return GetEnvironmentVariableA(name, exact.data(), length + 1); });
        check.equal(at + "exactly full: result", made.result, length);
        check.text(at + "exactly full: value", exact.text(), variable.value);
        check.equal(at + "exactly full: the last error stays", made.error, kUntouchedError);
        check.holds(at + "exactly full: nothing is written behind it", exact.isUntouchedBehind());
        for (const DWORD room : {length, DWORD{1}, DWORD{0}}) {
            Room small(room);
            const std::string of =
                room == length ? at + "one byte short: " : at + "room for " + std::to_string(room) + ": ";
            check.equal(of + "result", GetEnvironmentVariableA(name, small.data(), room), length + 1);
            check.holds(of + "nothing is written behind the room", small.isUntouchedBehind());
        }
        Room more(length + 10);
        check.equal(at + "more room: result", GetEnvironmentVariableA(name, more.data(), length + 10), length);
        check.holds(at + "more room: nothing is written behind it", more.isUntouchedFrom(length + 1));
    }
    Room room(32);
    for (const char* name : {"kvconform_text", "KvConform_Text"}) {
        check.equal("\""s + name + "\": result", GetEnvironmentVariableA(name, room.data(), 32), 9);
        check.text("\""s + name + "\": value", room.text(), "some text");
    }
    for (const char* name : {"KVCONFORM_NONE", "KVCONFORM_TEX", "KVCONFORM_TEXT ", "KVCONFORM_TEXT=", ""}) {
        Room untouched(32);
        const auto made = suite.make([&] { return GetEnvironmentVariableA(name, untouched.data(), 32); });
        check.equal("the missing \""s + name + "\": result", made.result, 0);
        check.equal("the missing \""s + name + "\": error", made.error, ERROR_ENVVAR_NOT_FOUND);
        check.holds("the missing \""s + name + "\": nothing is written", untouched.isUntouched());
    }
}

struct ProfileAnswer {
    DWORD length;
    Room room;
};

ProfileAnswer read(const World& world, const char* section, const char* entry, const char* otherwise, DWORD size) {
    ProfileAnswer answer{0, Room(size)};
    answer.length = static_cast<DWORD>(
        GetPrivateProfileStringA(section, entry, otherwise, answer.room.data(), size, world.folder(kProfile).c_str()));
    return answer;
}

void testProfile(Suite& suite) {
    const Check check = suite.of("GetPrivateProfileStringA");
    const struct {
        const char* entry;
        const char* value;
    } entries[] = {{"device", "HP LaserJet,winspool,LPT1:"},
                   {"DEVICE", "HP LaserJet,winspool,LPT1:"},
                   {"quoted", " two blanks  "},
                   {"single", "one"},
                   {"half", "\"half"},
                   {"uneven", "\"uneven'"},
                   {"inner", "a \"b\" c"},
                   {"blanks", "between blanks"},
                   {"nothing", ""},
                   {"equals", "a=b"},
                   {"quotes alone", ""},
                   {"one quote", "\""},
                   {"high", "k\xE4se"}};
    for (const auto& one : entries) {
        const std::string at = "\""s + one.entry + "\": ";
        const ProfileAnswer answer = read(suite.world, kSection, one.entry, "otherwise", 64);
        check.equal(at + "result", answer.length, std::strlen(one.value));
        check.text(at + "value", answer.room.text(), one.value);
        check.holds(at + "nothing is written behind it", answer.room.isUntouchedFrom(answer.length + 1));
    }
    check.text("the section in upper case", read(suite.world, "WINDOWS", "device", "", 64).room.text(),
               "HP LaserJet,winspool,LPT1:");
    const DWORD length = 26;
    const ProfileAnswer exact = read(suite.world, kSection, "device", "", length + 1);
    check.equal("exactly full: result", exact.length, length);
    check.holds("exactly full: nothing is written behind it", exact.room.isUntouchedBehind());
    for (const DWORD room : {length, DWORD{3}, DWORD{2}, DWORD{1}}) {
        const std::string at = "room for " + std::to_string(room) + ": ";
        const ProfileAnswer cut = read(suite.world, kSection, "device", "", room);
        check.equal(at + "result", cut.length, room - 1);
        check.text(at + "value", cut.room.text(), std::string_view("HP LaserJet,winspool,LPT1:").substr(0, room - 1));
        check.holds(at + "nothing is written behind it", cut.room.isUntouchedBehind());
    }
    const ProfileAnswer none = read(suite.world, kSection, "device", "", 0);
    check.equal("no room: result", none.length, 0);
    check.holds("no room: nothing is written", none.room.isUntouched());
    const struct {
        const char* what;
        const char* section;
        const char* entry;
        const char* otherwise;
        const char* expected;
    } missing[] = {{"a missing entry", kSection, "none", "otherwise", "otherwise"},
                   {"a missing section", "none", "device", "otherwise", "otherwise"},
                   {"the head of an entry", kSection, "devic", "otherwise", "otherwise"},
                   {"no default", kSection, "none", nullptr, ""},
                   {"an empty default", kSection, "none", "", ""},
                   {"a default with blanks behind it", kSection, "none", "otherwise   ", "otherwise"},
                   {"a default with blanks in front", kSection, "none", "  otherwise", "  otherwise"}};
    for (const auto& one : missing) {
        const ProfileAnswer answer = read(suite.world, one.section, one.entry, one.otherwise, 64);
        check.equal(one.what + ": result"s, answer.length, std::strlen(one.expected));
        check.text(one.what + ": value"s, answer.room.text(), one.expected);
    }
    const ProfileAnswer cut = read(suite.world, kSection, "none", "otherwise", 4);
    check.equal("a default that is too long: result", cut.length, 3);
    check.text("a default that is too long: value", cut.room.text(), "oth");
}

}  // namespace

void testNames(Suite& suite) {
    testUserName(suite);
    testUserNameEx(suite);
    testComputerName(suite);
}

void testEnvironment(Suite& suite) {
    testVariable(suite);
    testProfile(suite);
}

}  // namespace conformance
