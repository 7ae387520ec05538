// Which Windows this is.
#include <cstring>
#include <string>

#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

void testGetVersionEx(Suite& suite) {
    const Check check = suite.of("GetVersionExA");
    OSVERSIONINFOEXA info;
    for (const DWORD size : {DWORD{sizeof(OSVERSIONINFOA)}, DWORD{sizeof(OSVERSIONINFOEXA)}}) {
        const std::string at = size == sizeof info ? "the long structure: " : "the short structure: ";
        std::memset(&info, 0x5A, sizeof info);
        info.dwOSVersionInfoSize = size;
        const auto made = suite.make([&] { return GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&info)); });
        check.equal(at + "result", made.result, TRUE);
        check.equal(at + "its size stays", info.dwOSVersionInfoSize, size);
        check.equal(at + "platform", info.dwPlatformId, VER_PLATFORM_WIN32_NT);
        check.holds(at + "a version",
                    info.dwMajorVersion >= 4 && info.dwMajorVersion < 100 && info.dwMinorVersion < 100);
        check.holds(at + "a build", info.dwBuildNumber > 0 && info.dwBuildNumber < 0x10000);
        check.holds(at + "the service pack ends",
                    std::memchr(info.szCSDVersion, 0, sizeof info.szCSDVersion) != nullptr);
        check.equal(at + "what lies behind is written", info.wSuiteMask != 0x5A5A, size == sizeof info);
    }
    for (const DWORD size : {DWORD{0}, DWORD{sizeof(OSVERSIONINFOA)} - 1, DWORD{sizeof(OSVERSIONINFOA)} + 1,
                             DWORD{sizeof(OSVERSIONINFOEXA)} - 1, DWORD{sizeof(OSVERSIONINFOEXA)} + 1}) {
        const std::string at = "a size of " + std::to_string(size) + ": ";
        std::memset(&info, 0x5A, sizeof info);
        info.dwOSVersionInfoSize = size;
        const auto made = suite.make([&] { return GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&info)); });
        check.equal(at + "result", made.result, FALSE);
        check.equal(at + "error", made.error, ERROR_INSUFFICIENT_BUFFER);
        check.equal(at + "nothing is written", info.dwMajorVersion, 0x5A5A5A5A);
    }
}

void testGetVersion(Suite& suite) {
    const Check check = suite.of("GetVersion");
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof info;
    GetVersionExA(&info);
    const auto made = suite.make([] { return GetVersion(); });
    check.equal("the last error stays", made.error, kUntouchedError);
    check.equal("the lowest byte is the major version", made.result & 0xFF, info.dwMajorVersion);
    check.equal("the second byte is the minor version", made.result >> 8 & 0xFF, info.dwMinorVersion);
    check.equal("the upper half is the build", made.result >> 16, info.dwBuildNumber);
    check.equal("the highest bit is clear on the NT family", made.result >> 31, 0);
    check.equal("the same again", GetVersion(), made.result);
}

using SetMask = decltype(&VerSetConditionMask);
using Verify = decltype(&VerifyVersionInfoA);

void testConditionMask(Suite& suite) {
    const Check check = suite.of("VerSetConditionMask");
    const Library library("ntdll.dll");
    const auto set = library.find<SetMask>("VerSetConditionMask");
    check.holds("it is there", set != nullptr);
    if (set == nullptr)
        return;
    constexpr ULONGLONG kConditions = 0xFFFFFF;
    const struct {
        const char* what;
        DWORD types;
        BYTE condition;
        ULONGLONG expected;
    } cases[] = {
        {"minor version", VER_MINORVERSION, VER_EQUAL, 1},
        {"major version", VER_MAJORVERSION, VER_EQUAL, 1 << 3},
        {"build", VER_BUILDNUMBER, VER_GREATER, 2 << 6},
        {"platform", VER_PLATFORMID, VER_GREATER_EQUAL, 3 << 9},
        {"minor service pack", VER_SERVICEPACKMINOR, VER_LESS, 4 << 12},
        {"major service pack", VER_SERVICEPACKMAJOR, VER_LESS_EQUAL, 5 << 15},
        {"suite, all", VER_SUITENAME, VER_AND, 6 << 18},
        {"suite, any", VER_SUITENAME, VER_OR, 7 << 18},
        {"product type", VER_PRODUCT_TYPE, VER_EQUAL, 1 << 21},
        {"of two types the higher alone", VER_SUITENAME | VER_MINORVERSION, VER_AND, 6 << 18},
        {"of all types the highest alone", 0xFF, VER_EQUAL, 1 << 21},
        {"a condition's three bits alone", VER_SUITENAME, 0xFE, 6 << 18},
        {"no condition", VER_SUITENAME, 0, 0},
        {"no type", 0, VER_AND, 0},
    };
    for (const auto& one : cases)
        check.equal(one.what, set(0, one.types, one.condition) & kConditions, one.expected);
    check.equal("what is set already stays",
                set(set(0, VER_MINORVERSION, VER_EQUAL), VER_SUITENAME, VER_AND) & kConditions, 6 << 18 | 1);
    check.equal("conditions of one type are joined",
                set(set(0, VER_SUITENAME, 1), VER_SUITENAME, VER_AND) & kConditions, 7 << 18);
}

void testVerify(Suite& suite) {
    const Check check = suite.of("VerifyVersionInfoA");
    const Library ntdll("ntdll.dll");
    const Library kernel("KERNEL32.dll");
    const auto set = ntdll.find<SetMask>("VerSetConditionMask");
    const auto verify = kernel.find<Verify>("VerifyVersionInfoA");
    check.holds("it is there", set != nullptr && verify != nullptr);
    if (set == nullptr || verify == nullptr)
        return;
    OSVERSIONINFOEXA own{};
    own.dwOSVersionInfoSize = sizeof own;
    GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&own));
    const auto ask = [&](WORD suites, BYTE condition) {
        OSVERSIONINFOEXA info{};
        info.dwOSVersionInfoSize = sizeof info;
        info.wSuiteMask = suites;
        const ULONGLONG conditions = set(0, VER_SUITENAME, condition);
        return suite.make([&] { return verify(&info, VER_SUITENAME, conditions); });
    };
    constexpr WORD kTerminal = 0x10;
    const auto terminal = ask(kTerminal, VER_AND);
    check.equal("the terminal suite, all: as GetVersionExA tells", terminal.result, (own.wSuiteMask & kTerminal) != 0);
    check.equal("the terminal suite, all: error", terminal.error,
                terminal.result != FALSE ? kUntouchedError : DWORD{ERROR_OLD_WIN_VERSION});
    check.equal("the terminal suite, any: as GetVersionExA tells", ask(kTerminal, VER_OR).result,
                (own.wSuiteMask & kTerminal) != 0);
    check.equal("no suite, all: result", ask(0, VER_AND).result, TRUE);
    // 0x4000 stands for a home server, 0x0400 for an embedded Windows.
    const auto other = ask(0x4000, VER_AND);
    check.equal("a suite that is not there: result", other.result, FALSE);
    check.equal("a suite that is not there: error", other.error, ERROR_OLD_WIN_VERSION);
    check.equal("that one and the terminal suite, all: result", ask(0x4010, VER_AND).result, FALSE);
    check.equal("that one and the terminal suite, any: result", ask(0x4010, VER_OR).result,
                (own.wSuiteMask & kTerminal) != 0);
    OSVERSIONINFOEXA info{};
    info.dwOSVersionInfoSize = sizeof info;
    info.wSuiteMask = kTerminal;
    const auto bare = suite.make([&] { return verify(&info, VER_SUITENAME, 0); });
    check.equal("no conditions: result", bare.result, FALSE);
    check.equal("no conditions: error", bare.error, ERROR_BAD_ARGUMENTS);
}

}  // namespace

void testVersions(Suite& suite) {
    testGetVersionEx(suite);
    testGetVersion(suite);
    testConditionMask(suite);
    testVerify(suite);
}

}  // namespace conformance
