// The own process, its token and its last error.
#include <cstring>
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

void testOpenProcess(Suite& suite) {
    const Check check = suite.of("OpenProcess");
    const DWORD own = GetCurrentProcessId();
    const auto made = suite.make([&] { return OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, own); });
    check.holds("the own process: a handle", made.result != nullptr);
    check.equal("the own process: the last error stays", made.error, kUntouchedError);
    check.holds("again: another handle", OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, own) != made.result);
    for (const DWORD id : {DWORD{0}, DWORD{0xFFFFFFF0}}) {
        const std::string at = "the number " + std::to_string(id) + ": ";
        const auto none = suite.make([&] { return OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, id); });
        check.holds(at + "none", none.result == nullptr);
        check.equal(at + "error", none.error, ERROR_INVALID_PARAMETER);
    }
}

HANDLE ownToken() {
    HANDLE token = nullptr;
    OpenProcessToken(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetCurrentProcessId()), TOKEN_QUERY, &token);
    return token;
}

void testOpenToken(Suite& suite) {
    const Check check = suite.of("OpenProcessToken");
    HANDLE token = nullptr;
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetCurrentProcessId());
    const auto made = suite.make([&] { return OpenProcessToken(process, TOKEN_QUERY, &token); });
    check.equal("the own process: result", made.result, TRUE);
    check.holds("the own process: a token", token != nullptr && token != process);
    check.equal("the own process: the last error stays", made.error, kUntouchedError);
    HANDLE other = nullptr;
    const auto none = suite.make([&] { return OpenProcessToken(nullptr, TOKEN_QUERY, &other); });
    check.equal("no process: result", none.result, FALSE);
    check.equal("no process: error", none.error, ERROR_INVALID_HANDLE);
    check.holds("no process: no token", other == nullptr);
}

void testTokenInformation(Suite& suite) {
    const Check check = suite.of("GetTokenInformation");
    const HANDLE token = ownToken();
    for (const DWORD size : {DWORD{4}, DWORD{8}}) {
        Room room(8);
        DWORD needed = 77;
        const std::string at = "room for " + std::to_string(size) + ": ";
        const auto made =
            suite.make([&] { return GetTokenInformation(token, TokenSessionId, room.data(), size, &needed); });
        check.equal(at + "result", made.result, TRUE);
        check.equal(at + "size", needed, 4);
        DWORD session = 0;
        std::memcpy(&session, room.data(), sizeof session);
        check.holds(at + "a session", session < 0x10000);
        check.holds(at + "nothing is written behind it", room.isUntouchedFrom(4));
    }
    for (const DWORD size : {DWORD{3}, DWORD{0}}) {
        Room room(4);
        DWORD needed = 77;
        const std::string at = "room for " + std::to_string(size) + ": ";
        const auto made =
            suite.make([&] { return GetTokenInformation(token, TokenSessionId, room.data(), size, &needed); });
        check.equal(at + "result", made.result, FALSE);
        check.equal(at + "error", made.error, ERROR_INSUFFICIENT_BUFFER);
        check.equal(at + "size needed", needed, 4);
        check.holds(at + "nothing is written", room.isUntouched());
    }
    DWORD session = 0;
    DWORD needed = 0;
    const auto asked = suite.make([&] { return GetTokenInformation(token, TokenSessionId, nullptr, 0, &needed); });
    check.equal("no buffer: result", asked.result, FALSE);
    check.equal("no buffer: error", asked.error, ERROR_INSUFFICIENT_BUFFER);
    check.equal("no buffer: size needed", needed, 4);
    const auto none =
        suite.make([&] { return GetTokenInformation(nullptr, TokenSessionId, &session, sizeof session, &needed); });
    check.equal("no token: result", none.result, FALSE);
    check.equal("no token: error", none.error, ERROR_INVALID_HANDLE);
}

void testLastError(Suite& suite) {
    const Check check = suite.of("GetLastError");
    suite.world.setLastError(1234);
    check.equal("what was left", GetLastError(), 1234);
    check.equal("it stays", GetLastError(), 1234);
    GetCurrentProcessId();
    check.equal("a call that cannot fail leaves it", GetLastError(), 1234);
    GetModuleHandleA("kvconform-missing.dll");
    check.equal("a call that fails sets it", GetLastError(), ERROR_MOD_NOT_FOUND);
    HKEY key = nullptr;
    RegOpenKeyA(HKEY_CURRENT_USER, "kvconform none", &key);
    check.equal("a call that gives its error as result leaves it", GetLastError(), ERROR_MOD_NOT_FOUND);
    GetModuleHandleA("kernel32.dll");
    check.equal("a call that succeeds leaves it", GetLastError(), ERROR_MOD_NOT_FOUND);
}

}  // namespace

void testProcesses(Suite& suite) {
    const Check check = suite.of("GetCurrentProcessId");
    const DWORD own = GetCurrentProcessId();
    check.holds("a number", own != 0);
    check.equal("the same again", GetCurrentProcessId(), own);
    testOpenProcess(suite);
    testOpenToken(suite);
    testTokenInformation(suite);
    testLastError(suite);
}

}  // namespace conformance
