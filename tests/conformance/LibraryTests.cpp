// Libraries and what is looked up in them.
#include <string>

#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

constexpr char kMissing[] = "kvconform-missing.dll";
// Not loaded by the suite itself.
constexpr char kLoadable[] = "powrprof.dll";

void testModuleHandle(Suite& suite) {
    const Check check = suite.of("GetModuleHandleA");
    const HMODULE kernel = GetModuleHandleA("KERNEL32.dll");
    check.holds("a library of the program", kernel != nullptr);
    for (const char* name : {"kernel32.dll", "Kernel32.DLL", "KERNEL32", "kernel32"})
        check.holds("the same as \""s + name + "\"", GetModuleHandleA(name) == kernel);
    check.holds("ntdll is always there", GetModuleHandleA("ntdll.dll") != nullptr);
    check.holds("another library has another handle", GetModuleHandleA("ntdll.dll") != kernel);
    for (const char* name : {kMissing, "kvconform-missing", "kernel32.", "kernel32.exe", "KERNEL3"}) {
        const auto made = suite.make([&] { return GetModuleHandleA(name); });
        check.holds("\""s + name + "\": none", made.result == nullptr);
        check.equal("\""s + name + "\": error", made.error, ERROR_MOD_NOT_FOUND);
    }
    const auto program = suite.make([] { return GetModuleHandleA(nullptr); });
    check.holds("null: the program", program.result != nullptr && program.result != kernel);
    check.equal("null: the last error stays", program.error, kUntouchedError);
}

void testLoading(Suite& suite) {
    const Check load = suite.of("LoadLibraryA");
    const Check unload = suite.of("FreeLibrary");
    load.holds("before: not loaded", GetModuleHandleA(kLoadable) == nullptr);
    const HMODULE first = LoadLibraryA(kLoadable);
    load.holds("a library", first != nullptr);
    load.holds("it is loaded then", GetModuleHandleA(kLoadable) == first);
    load.holds("again: the same handle", LoadLibraryA("POWRPROF") == first);
    unload.equal("loaded twice, the first time: result", FreeLibrary(first), TRUE);
    unload.holds("loaded twice, the first time: it stays", GetModuleHandleA(kLoadable) == first);
    unload.equal("loaded twice, the second time: result", FreeLibrary(first), TRUE);
    unload.holds("loaded twice, the second time: it is gone", GetModuleHandleA(kLoadable) == nullptr);
    const auto again = suite.make([&] { return FreeLibrary(first); });
    unload.equal("once too often: result", again.result, FALSE);
    unload.equal("once too often: error", again.error, ERROR_MOD_NOT_FOUND);
    const auto none = suite.make([] { return FreeLibrary(nullptr); });
    unload.equal("null: result", none.result, FALSE);
    unload.equal("null: error", none.error, ERROR_INVALID_HANDLE);

    for (const char* name : {kMissing, "kvconform-missing", "C:\\kvconform-missing\\kernel.dll"}) {
        const auto made = suite.make([&] { return LoadLibraryA(name); });
        load.holds("\""s + name + "\": none", made.result == nullptr);
        load.equal("\""s + name + "\": error", made.error, ERROR_MOD_NOT_FOUND);
    }
    const auto null = suite.make([] { return LoadLibraryA(nullptr); });
    load.holds("null: none", null.result == nullptr);
    // Which of them depends on the version of Windows.
    load.holds("null: error", null.error == ERROR_MOD_NOT_FOUND || null.error == ERROR_INVALID_PARAMETER);
    const HMODULE kernel = GetModuleHandleA("kernel32.dll");
    load.holds("a library that is there already", LoadLibraryA("kernel32.dll") == kernel);
    unload.equal("a library of the program: result", FreeLibrary(kernel), TRUE);
    unload.holds("a library of the program: it stays", GetModuleHandleA("kernel32.dll") == kernel);
}

void testProcAddress(Suite& suite) {
    const Check check = suite.of("GetProcAddress");
    const HMODULE kernel = GetModuleHandleA("kernel32.dll");
    const auto found = suite.make([&] { return GetProcAddress(kernel, "GetDiskFreeSpaceExA"); });
    check.holds("a function", found.result != nullptr);
    check.equal("a function: the last error stays", found.error, kUntouchedError);
    check.holds("the same again", GetProcAddress(kernel, "GetDiskFreeSpaceExA") == found.result);
    check.holds("another function", GetProcAddress(kernel, "VerifyVersionInfoA") != found.result);
    for (const char* name :
         {"KVConformMissing", "getdiskfreespaceexa", "GetDiskFreeSpaceEx", "GetDiskFreeSpaceExA ", ""}) {
        const auto made = suite.make([&] { return GetProcAddress(kernel, name); });
        check.holds("\""s + name + "\": none", made.result == nullptr);
        check.equal("\""s + name + "\": error", made.error, ERROR_PROC_NOT_FOUND);
    }
    const HMODULE null = nullptr;
    const auto none = suite.make([&] { return GetProcAddress(null, "KVConformMissing"); });
    check.holds("no library, a missing function: none", none.result == nullptr);
    check.equal("no library, a missing function: error", none.error, ERROR_PROC_NOT_FOUND);
    // cppcheck-suppress returnDanglingLifetime ; that it is unloaded is the point
    const HMODULE unloaded = [] { return Library(kLoadable).handle(); }();
    const auto gone = suite.make([&] { return GetProcAddress(unloaded, "CallNtPowerInformation"); });
    check.holds("a library that was unloaded: none", gone.result == nullptr);
    check.equal("a library that was unloaded: error", gone.error, ERROR_MOD_NOT_FOUND);
    const auto* tooHigh = reinterpret_cast<const char*>(ULONG_PTR{0xFFF0});
    check.holds("an ordinal that is not there", GetProcAddress(kernel, tooHigh) == nullptr);
}

void testLookUps(Suite& suite) {
    const Check check = suite.of("GetProcAddress");
    const struct {
        const char* library;
        const char* function;
    } lookUps[] = {
#define SIMWIN_LOOKUP(library, name) {library, #name},
#include "simwin/calls/Calls.inc"
    };
    for (const auto& one : lookUps) {
        const Library library(one.library);
        if (library.handle() == nullptr)
            check.skip(one.library + " is not on this computer"s);
        else
            check.holds("what the module looks up: "s + one.library + "!" + one.function,
                        library.find<void (*)()>(one.function) != nullptr);
    }
}

}  // namespace

void testLibraries(Suite& suite) {
    testModuleHandle(suite);
    testLoading(suite);
    testProcAddress(suite);
    testLookUps(suite);
}

}  // namespace conformance
