// What a machine keeps of a run: its calls, its failures, and what is open.
#include <gmock/gmock.h>

#include <array>
#include <functional>

#include "simwin/calls/Calls.h"
#include "tests/simwin/EveryCall.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using testing::AllOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

TEST(Machine, CountsCallsAndThoseThatCanFail) {
    Running running(describedForEveryCall());
    GetVersion();
    GetKeyboardType(0);
    GetProcessHeap();
    EXPECT_EQ(running.machine.calls(), 2u);
    EXPECT_EQ(running.machine.faultableCalls(), 1u);
}

TEST(Machine, IsCurrentForItsScope) {
    Running outer(describedForEveryCall());
    {
        Station other;
        other.codePages.oem = 850;
        const Running inner(other);
        EXPECT_EQ(GetOEMCP(), 850u);
    }
    EXPECT_EQ(GetOEMCP(), 437u);
    EXPECT_EQ(outer.machine.calls(), 1u);
}

TEST(Machine, FailsTheCallThatItIsToldToAndNoOther) {
    Running running(describedForEveryCall());
    running.machine.failCall(2);
    EXPECT_EQ(GetKeyboardType(0), 4);
    EXPECT_EQ(GetVersion() & 0xFF, 5u);
    EXPECT_EQ(running.machine.failedCall(), "");
    EXPECT_EQ(GetKeyboardType(0), 0);
    EXPECT_EQ(running.machine.failedCall(), "GetKeyboardType");
    EXPECT_EQ(GetKeyboardType(0), 4);
}

TEST(Machine, AnswersByAChangedStationTheCallsThatItIsToldToAndNoOther) {
    const auto station = std::make_shared<Station>();
    station->keyboard = {.type = 4, .subType = 0};
    Machine machine(station);
    const Machine::Scope scope(machine);
    const std::function<void()> toggle = [&] { station->keyboard->type ^= 3; };
    machine.changeCall(2, toggle);
    EXPECT_EQ(GetKeyboardType(0), 4);
    EXPECT_EQ(GetKeyboardType(0), 7);
    EXPECT_EQ(GetKeyboardType(0), 4);

    Machine other(station);
    const Machine::Scope otherScope(other);
    const std::function<void()> toggleBoth = [&] {
        toggle();
        station->codePages.oem ^= 1;
    };
    other.changeCallsOf("GetKeyboardType", toggleBoth);
    EXPECT_EQ(GetOEMCP(), 437u);
    EXPECT_EQ(GetKeyboardType(0), 7);
    EXPECT_EQ(GetOEMCP(), 437u);
    EXPECT_EQ(GetKeyboardType(0), 7);
    EXPECT_EQ(station->keyboard->type, 4);
}

// The answer of a call that fails as its first faultable one, and the error that it leaves.
struct FailureCase {
    const char* call;
    std::function<std::int64_t()> make;
    std::int64_t result;
    DWORD lastError;
};

TEST(Machine, FailsEachCallAsWindowsWould) {
    HKEY key = nullptr;
    DWORD size = 4;
    BYTE data[4] = {};
    std::array<char, 64> text = {'x'};
    WIN32_FIND_DATAA found;
    const auto pointer = [](auto* value) { return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(value)); };
    const FailureCase cases[] = {
        {"RegOpenKeyA", [&] { return RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE", &key); }, ERROR_ACCESS_DENIED, 0},
        {"RegQueryValueExA", [&] { return RegQueryValueExA(HKEY_LOCAL_MACHINE, "", nullptr, nullptr, nullptr, &size); },
         ERROR_ACCESS_DENIED, 0},
        {"RegQueryValueExA", [&] { return RegQueryValueExA(HKEY_LOCAL_MACHINE, "", nullptr, nullptr, data, &size); },
         ERROR_MORE_DATA, 0},
        {"LoadLibraryA", [&] { return pointer(LoadLibraryA("ws2_32.dll")); }, 0, ERROR_MOD_NOT_FOUND},
        {"GetProcAddress", [&] { return pointer(GetProcAddress(nullptr, "x")); }, 0, ERROR_PROC_NOT_FOUND},
        {"FindFirstFileA", [&] { return pointer(FindFirstFileA("C:\\a.dll", &found)); }, -1, ERROR_ACCESS_DENIED},
        {"OpenProcess", [&] { return pointer(OpenProcess(0, FALSE, 1234)); }, 0, ERROR_ACCESS_DENIED},
        {"GlobalAlloc", [&] { return pointer(GlobalAlloc(0, 1)); }, 0, ERROR_NOT_ENOUGH_MEMORY},
        {"GetComputerNameA", [&] { return GetComputerNameA(text.data(), &size); }, 0, ERROR_FILE_NOT_FOUND},
        {"gethostname", [&] { return sim_gethostname(text.data(), 64); }, -1, WSAENETDOWN},
        {"_access", [&] { return _access("C:\\a.dll", 0); }, -1, ERROR_ACCESS_DENIED},
        {"KVGetEnv", [&] { return KVGetEnv("A", text.data(), 64); }, 0, ERROR_ENVVAR_NOT_FOUND},
        {"WSAStartup", [&] { return WSAStartup(0x0101, nullptr); }, WSASYSNOTREADY, 0},
    };
    for (const FailureCase& one : cases) {
        Running running(describedForEveryCall());
        running.machine.failCall(1);
        EXPECT_EQ(one.make(), one.result) << one.call;
        EXPECT_EQ(running.machine.lastError(), one.lastError) << one.call;
        EXPECT_EQ(running.machine.failedCall(), one.call);
        EXPECT_THAT(running.machine.openHandles(), IsEmpty()) << one.call;
    }
    EXPECT_EQ(size, 5u) << "a value that grew tells its new size";
    EXPECT_EQ(text[0], '\0') << "a variable that is not there empties the buffer";
}

TEST(Machine, FailsWithTheErrorThatTheStationStates) {
    Station station = describedForEveryCall();
    station.fails = {{"GetComputerNameA", 1234}, {"RegOpenKeyA", 1011}};
    const Running running(station);
    std::array<char, 64> text{};
    DWORD size = 64;
    HKEY key = nullptr;
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(GetComputerNameA(text.data(), &size));
        EXPECT_EQ(GetLastError(), 1234u);
        EXPECT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE", &key), 1011);
    }
    EXPECT_TRUE(GetUserNameA(text.data(), &size));
}

TEST(Machine, LeavesNothingOpenBehindAFailureAnywhere) {
    std::uint64_t count = 0;
    {
        Running running(describedForEveryCall());
        makeEveryCall();
        count = running.machine.faultableCalls();
        EXPECT_THAT(running.machine.misuses(), IsEmpty());
    }
    ASSERT_GT(count, 50u);
    for (std::uint64_t n = 1; n <= count; ++n) {
        Running running(describedForEveryCall());
        running.machine.failCall(n);
        makeEveryCall();
        EXPECT_NE(running.machine.failedCall(), "");
        EXPECT_THAT(running.machine.misuses(), IsEmpty()) << running.machine.failedCall();
        EXPECT_THAT(running.machine.openHandles(HandleKind::RegistryKey), IsEmpty()) << running.machine.failedCall();
    }
}

// A handle of each kind, opened in another order than that of the kinds.
struct OneOfEach {
    DWORD size = 0;
    char* citrix = nullptr;
    BYTE* net = nullptr;
    HKEY key = nullptr;
    HANDLE local = nullptr, global = nullptr, find = nullptr, process = nullptr, token = nullptr;
    HMODULE library = nullptr;

    OneOfEach() {
        sim_WFQuerySessionInformationA(nullptr, 0xFFFFFFFF, 10, &citrix, &size);
        sim_NetWkstaGetInfo(nullptr, 101, &net);
        local = LocalAlloc(LPTR, 4);
        global = GlobalAlloc(GMEM_MOVEABLE, 4);
        WIN32_FIND_DATAA data;
        find = FindFirstFileA("C:\\a.dll", &data);
        process = OpenProcess(0, FALSE, 1234);
        OpenProcessToken(process, TOKEN_QUERY, &token);
        library = LoadLibraryA("powrprof.dll");
        RegOpenKeyA(HKEY_LOCAL_MACHINE, "software\\product", &key);
    }
};

TEST(Machine, TellsWhatIsOpenByItsKind) {
    Running running(describedForEveryCall());
    const OneOfEach one;
    const auto number = [](const void* handle) { return reinterpret_cast<std::uintptr_t>(handle); };
    const OpenHandle expected[] = {
        {HandleKind::RegistryKey, 0x10000004, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Product"},
        {HandleKind::Library, number(one.library), "powrprof.dll"},
        {HandleKind::Process, 0x30000004, "process 1234"},
        {HandleKind::Token, 0x40000004, "token of process 1234"},
        {HandleKind::Find, 0x50000004, "C:\\a.dll"},
        {HandleKind::GlobalBlock, 0x60000004, ""},
        {HandleKind::LocalBlock, number(one.local), ""},
        {HandleKind::NetBuffer, number(one.net), ""},
        {HandleKind::CitrixBuffer, number(one.citrix), ""},
    };
    const auto same = [](const OpenHandle& handle) {
        return AllOf(Field("kind", &OpenHandle::kind, handle.kind), Field("value", &OpenHandle::value, handle.value),
                     Field("what", &OpenHandle::what, handle.what));
    };
    std::vector<testing::Matcher<OpenHandle>> all;
    for (const OpenHandle& handle : expected) {
        EXPECT_THAT(running.machine.openHandles(handle.kind), ElementsAre(same(handle)));
        EXPECT_TRUE(running.machine.isOpen(handle.value)) << static_cast<int>(handle.kind);
        all.emplace_back(same(handle));
    }
    EXPECT_THAT(running.machine.openHandles(), ElementsAreArray(all));
    EXPECT_FALSE(running.machine.isOpen(0));
}

TEST(Machine, KnowsWhatWasClosedAsNotOpen) {
    Running running(describedForEveryCall());
    const OneOfEach one;
    RegCloseKey(one.key);
    FreeLibrary(one.library);
    FindClose(one.find);
    GlobalFree(one.global);
    LocalFree(one.local);
    sim_NetApiBufferFree(one.net);
    const void* closed[] = {one.key, one.library, one.find, one.global, one.local, one.net};
    for (const void* handle : closed)
        EXPECT_FALSE(running.machine.isOpen(reinterpret_cast<std::uintptr_t>(handle))) << handle;
    EXPECT_THAT(running.machine.openHandles(), SizeIs(3));
}

}  // namespace
