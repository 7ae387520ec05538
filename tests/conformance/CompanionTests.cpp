// The companion libraries' functions: on Windows the project's own libraries, which stand beside this program. And what
// the module looks up in libraries that few computers have.
#include <cstring>
#include <string>

#include "companions/kvenv/kvenv.h"
#include "companions/kvnetapi/kvnetapi.h"
#include "companions/kvtswrp/KVTSWRP.h"
#include "companions/zrtrc/ZRtrc.h"
#include "framework/String.h"
#include "tests/conformance/Arrangement.h"
#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

constexpr unsigned short kSetOrdinal = 2;
constexpr unsigned short kGetOrdinal = 3;

void testGetVariable(Suite& suite, decltype(&KVGetEnv) get) {
    const Check check = suite.of("KVGetEnv");
    for (const DescribedVariable& variable : describedVariables()) {
        const std::string at = variable.name + ": ";
        const auto length = variable.value.size();
        for (const std::size_t room : {length + 1, length, std::size_t{2}, std::size_t{1}}) {
            Room buffer(room);
            const std::string of = at + "room for " + std::to_string(room) + ": ";
            check.holds(of + "it is there", get(variable.name.c_str(), buffer.data(), static_cast<int>(room)) != 0);
            check.text(of + "value", buffer.text(), std::string_view(variable.value).substr(0, room - 1));
            check.holds(of + "nothing is written behind the room", buffer.isUntouchedBehind());
        }
        check.holds(at + "without a buffer: it is there", get(variable.name.c_str(), nullptr, 0) != 0);
    }
    Room room(16);
    check.holds("another letter case: it is there", get("kvconform_TEXT", room.data(), 16) != 0);
    check.text("another letter case: value", room.text(), "some text");
    for (const char* name : {"KVCONFORM_NONE", "", static_cast<const char*>(nullptr)}) {
        Room empty(16);
        const std::string at = "the missing "s + (name != nullptr ? "\""s + name + "\": " : "null: ");
        check.equal(at + "result", get(name, empty.data(), 16), 0);
        check.text(at + "an empty value", empty.text(), "");
        check.holds(at + "nothing is written behind it", empty.isUntouchedFrom(1));
        check.equal(at + "without a buffer", get(name, nullptr, 0), 0);
    }
    for (const int size : {0, -1}) {
        Room untouched(4);
        const std::string at = "a size of " + std::to_string(size) + ": ";
        check.holds(at + "it is there", get("KVCONFORM_TEXT", untouched.data(), size) != 0);
        check.holds(at + "nothing is written", untouched.isUntouched());
    }
}

void testSetVariable(Suite& suite, decltype(&KVSetEnv) set, decltype(&KVGetEnv) get) {
    const Check check = suite.of("KVSetEnv");
    char name[] = "KVCONFORM_SET";
    char upper[] = "kvconform_set";
    char first[] = "first";
    char second[] = "k\xE4se";
    char empty[] = "";
    char assignment[] = "KVCONFORM=X";
    const auto valueOf = [&] {
        Room room(32);
        return get(name, room.data(), 32) != 0 ? std::string(room.text()) : "not set"s;
    };
    check.text("before", valueOf(), "not set");
    check.holds("a value: set", set(name, first) != 0);
    check.text("a value: value", valueOf(), "first");
    Room room(32);
    check.equal("a value: Windows tells it too", GetEnvironmentVariableA(name, room.data(), 32), 5);
    check.holds("another value in another letter case: set", set(upper, second) != 0);
    check.text("another value in another letter case: value", valueOf(), "k\xE4se");
    check.holds("an empty value: set", set(name, empty) != 0);
    check.text("an empty value: value", valueOf(), "");
    check.holds("null: set", set(name, nullptr) != 0);
    check.text("null: value", valueOf(), "not set");
    check.equal("no name", set(nullptr, first), 0);
    check.equal("an empty name", set(empty, first), 0);
    check.equal("an equals sign in the name", set(assignment, first), 0);
}

void testVariables(Suite& suite) {
    const Library library("kvenv64.dll");
    const auto set = library.find<decltype(&KVSetEnv)>(kSetOrdinal);
    const auto get = library.find<decltype(&KVGetEnv)>(kGetOrdinal);
    if (set == nullptr || get == nullptr) {
        for (const char* function : {"KVGetEnv", "KVSetEnv"})
            suite.of(function).skip("kvenv64.dll is not beside this program");
        return;
    }
    testGetVariable(suite, get);
    testSetVariable(suite, set, get);
}

void checkSessionText(const Check& check, int (*query)(char*, int)) {
    Room whole(256);
    const int result = query(whole.data(), 256);
    const bool isTold = result != 0;
    check.equal("a result with a text, none without", isTold,
                !whole.isUntouched() && !whole.text().empty() && whole.text().size() < 256);
    check.equal("no buffer", query(nullptr, 256), 0);
    for (const int size : {0, -1}) {
        Room untouched(4);
        check.equal("a size of " + std::to_string(size) + ": result", query(untouched.data(), size), 0);
        check.holds("a size of " + std::to_string(size) + ": nothing is written", untouched.isUntouched());
    }
    if (!isTold) {
        check.skip("this session has no such text");
        return;
    }
    const auto length = whole.text().size();
    Room exact(length + 1);
    check.holds("exactly full: result", query(exact.data(), static_cast<int>(length + 1)) != 0);
    check.text("exactly full: text", exact.text(), whole.text());
    Room tight(length);
    query(tight.data(), static_cast<int>(length));
    check.text("one byte short: cut", tight.text(), whole.text().substr(0, length - 1));
    check.holds("one byte short: nothing is written behind it", tight.isUntouchedBehind());
}

void testSession(Suite& suite) {
    const Library library("KVTSWRP64.dll");
    const auto start = library.find<decltype(&ZRTSWRPInit)>("ZRTSWRPInit");
    const auto stop = library.find<decltype(&ZRTSWRPFree)>("ZRTSWRPFree");
    const auto session = library.find<decltype(&ZRTSQuerySessionID)>("ZRTSQuerySessionID");
    const char* const texts[] = {"ZRTSQueryClientName", "ZRTSQueryIPAddress", "ZRTSDomainName"};
    if (start == nullptr || stop == nullptr || session == nullptr) {
        for (const char* function : {"ZRTSWRPInit", "ZRTSQueryClientName", "ZRTSQueryIPAddress", "ZRTSDomainName",
                                     "ZRTSQuerySessionID", "ZRTSWRPFree"})
            suite.of(function).skip("KVTSWRP64.dll is not beside this program");
        return;
    }
    suite.of("ZRTSWRPInit").holds("result", start() != 0);
    suite.of("ZRTSWRPInit").holds("again: result", start() != 0);
    for (const char* function : texts) {
        const auto query = library.find<int (*)(char*, int)>(function);
        suite.of(function).holds("it is there", query != nullptr);
        if (query != nullptr)
            checkSessionText(suite.of(function), query);
    }
    const Check id = suite.of("ZRTSQuerySessionID");
    id.holds("a session", session() >= -1 && session() < 0x10000);
    id.equal("the same again", session(), session());
    suite.of("ZRTSWRPFree").holds("result", stop() != 0);
    suite.of("ZRTSWRPFree").holds("again: result", stop() != 0);
}

void testNetworkNames(Suite& suite) {
    const Library library("kvnetapi64.dll");
    const auto user = library.find<decltype(&KVGetUserName)>("KVGetUserName");
    const auto directory = library.find<decltype(&KVNDSWhoAmI)>("KVNDSWhoAmI");
    const auto domain = library.find<decltype(&KVGetDomainName)>("KVGetDomainName");
    if (user == nullptr || directory == nullptr || domain == nullptr) {
        for (const char* function : {"KVGetUserName", "KVNDSWhoAmI", "KVGetDomainName"})
            suite.of(function).skip("kvnetapi64.dll is not beside this program");
        return;
    }
    CString name("before");
    const int told = user(name);
    const Check userCheck = suite.of("KVGetUserName");
    userCheck.equal("a result with a name, none without", told != 0, std::strcmp(name, "before") != 0);
    userCheck.holds("no empty name", !name.IsEmpty());
    const Check directoryCheck = suite.of("KVNDSWhoAmI");
    name = "before";
    directoryCheck.equal("a station without a directory: result", directory("", name), 0);
    directoryCheck.text("a station without a directory: the name stays", static_cast<const char*>(name), "before");
    directoryCheck.equal("no context: result", directory(nullptr, name), 0);
    name = "before";
    domain(name);
    suite.of("KVGetDomainName").holds("a station in no domain: the name ends empty", name.IsEmpty());
}

void testTrace(Suite& suite) {
    const Check check = suite.of("ZRTrace");
    const Library library("ZRtrc64.dll");
    const auto trace = library.find<decltype(&ZRTrace)>("ZRTrace");
    if (trace == nullptr) {
        check.skip("ZRtrc64.dll is not beside this program");
        return;
    }
    trace(2, "kvconform", "%s is %d", "this", -5);
    trace(6, "kvconform", "%u%% of \"%s\"", 50U, "k\xE4se");
    const auto kept = suite.make([&] {
        trace(2, "kvconform", "plain");
        return 0;
    });
    const std::vector<std::string> lines = suite.world.traced();
    const auto line = [&](std::size_t i) { return i < lines.size() ? lines[i] : "none"s; };
    check.equal("lines", lines.size(), 3);
    check.text("a text and a number", line(0), "2 kvconform: this is -5");
    check.text("a sign and a letter of the code page", line(1), "6 kvconform: 50% of \"k\xE4se\"");
    check.text("no values", line(2), "2 kvconform: plain");
    check.equal("the last error stays", kept.error, kUntouchedError);
}

void testRareLibraries(Suite& suite) {
    const Check citrix = suite.of("WFQuerySessionInformationA");
    const Library wfapi("wfapi64.dll");
    using Query = BOOL(WINAPI*)(HANDLE, DWORD, int, LPSTR*, DWORD*);
    if (const auto query = wfapi.find<Query>("WFQuerySessionInformationA")) {
        char* name = nullptr;
        DWORD bytes = 0;
        if (query(nullptr, 0xFFFFFFFF, 10, &name, &bytes) != FALSE) {
            citrix.holds("the client's name: a text", name != nullptr);
            citrix.equal("the client's name: its size", bytes, name != nullptr ? std::strlen(name) + 1 : 0);
        } else {
            citrix.holds("no client's name: no text", name == nullptr);
        }
        citrix.equal("an unknown question: result", query(nullptr, 0xFFFFFFFF, 9999, &name, &bytes), FALSE);
    } else {
        citrix.skip("wfapi64.dll is not on this computer");
    }
    const Check vcd = suite.of("KVGetVCDVersion");
    const Library module("KVVCD32.dll");
    if (const auto version = module.find<int (*)()>("KVGetVCDVersion"))
        vcd.equal("the same again", version(), version());
    else
        vcd.skip("KVVCD32.dll is not on this computer");
}

}  // namespace

void testCompanions(Suite& suite) {
    testVariables(suite);
    testSession(suite);
    testNetworkNames(suite);
    testTrace(suite);
    testRareLibraries(suite);
}

}  // namespace conformance
