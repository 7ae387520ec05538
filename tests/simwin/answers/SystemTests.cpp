// Versions, processors, memory, keyboard and the process itself.
#include <gmock/gmock.h>

#include <array>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using testing::IsEmpty;

Station windows(std::uint32_t platformId, std::uint32_t major, std::uint32_t minor, std::uint32_t build) {
    Station station;
    station.version = WindowsVersion{platformId, major, minor, build, "", false};
    return station;
}

TEST(GetVersion, PacksTheVersionAndMarksWindows9x) {
    struct {
        Station station;
        DWORD expected;
    } const cases[] = {{windows(2, 5, 1, 2600), 0x0A280105},
                       {windows(2, 4, 0, 1381), 0x05650004},
                       {windows(1, 4, 10, 2222), 0xC0000A04},
                       {windows(0, 3, 11, 0), 0x80000B03},
                       {Station(), 0}};
    for (const auto& one : cases) {
        const Running running(one.station);
        EXPECT_EQ(GetVersion(), one.expected);
    }
}

TEST(GetVersionExA, FillsTheStructureOfEitherSize) {
    Station station = windows(2, 5, 1, 2600);
    station.version->servicePack = "Service Pack 3";
    station.version->terminalServices = true;
    const Running running(station);
    OSVERSIONINFOEXA info;
    std::memset(&info, 0x55, sizeof info);
    info.dwOSVersionInfoSize = 148;
    EXPECT_TRUE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&info)));
    EXPECT_EQ(info.dwPlatformId, 2u);
    EXPECT_EQ(info.dwMajorVersion, 5u);
    EXPECT_EQ(info.dwMinorVersion, 1u);
    EXPECT_EQ(info.dwBuildNumber, 2600u);
    EXPECT_STREQ(info.szCSDVersion, "Service Pack 3");
    EXPECT_EQ(info.wSuiteMask, 0x5555);
    info.dwOSVersionInfoSize = 156;
    EXPECT_TRUE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&info)));
    EXPECT_EQ(info.wSuiteMask, 0x10);
}

TEST(GetVersionExA, RefusesEveryOtherSize) {
    const Running running(windows(2, 5, 1, 2600));
    OSVERSIONINFOEXA info{};
    for (const DWORD size : {0u, 147u, 149u, 155u, 157u, 0xFFFFFFFFu}) {
        info.dwOSVersionInfoSize = size;
        EXPECT_FALSE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&info)));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    }
    EXPECT_EQ(info.dwMajorVersion, 0u);
    EXPECT_FALSE(GetVersionExA(nullptr));
}

TEST(GetVersionExA, RepeatsTheVersionInTheBuildNumberOfWindows9x) {
    const Running running(windows(1, 4, 10, 2222));
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof info;
    EXPECT_TRUE(GetVersionExA(&info));
    EXPECT_EQ(info.dwBuildNumber, 0x040A08AEu);
}

TEST(GetVersionExA, CutsAServicePackThatIsTooLong) {
    Station station = windows(2, 5, 1, 2600);
    station.version->servicePack = std::string(200, 'S');
    const Running running(station);
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof info;
    EXPECT_TRUE(GetVersionExA(&info));
    EXPECT_EQ(std::string(info.szCSDVersion), std::string(127, 'S'));
}

TEST(GetVersionExA, FailsWhenNoVersionIsDescribed) {
    const Running running;
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof info;
    EXPECT_FALSE(GetVersionExA(&info));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CALL_NOT_IMPLEMENTED});
}

BOOL asksForSuite(WORD suites, BYTE condition) {
    OSVERSIONINFOEXA info{};
    info.dwOSVersionInfoSize = sizeof info;
    info.wSuiteMask = suites;
    return sim_VerifyVersionInfoA(&info, VER_SUITENAME, sim_VerSetConditionMask(0, VER_SUITENAME, condition));
}

TEST(VerifyVersionInfoA, KnowsTheTerminalSuiteWhereItIsDescribed) {
    Station station = windows(2, 5, 2, 3790);
    {
        const Running running(station);
        EXPECT_FALSE(asksForSuite(0x10, VER_AND));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_OLD_WIN_VERSION});
    }
    station.version->terminalServices = true;
    const Running running(station);
    EXPECT_TRUE(asksForSuite(0x10, VER_AND));
    EXPECT_FALSE(asksForSuite(0x12, VER_AND));
    EXPECT_TRUE(asksForSuite(0x12, VER_OR));
    EXPECT_TRUE(asksForSuite(0, VER_AND));
}

TEST(VerifyVersionInfoA, RefusesWhatItCannotCompare) {
    const Running running(windows(2, 5, 2, 3790));
    OSVERSIONINFOEXA info{};
    const DWORDLONG mask = sim_VerSetConditionMask(0, VER_SUITENAME, VER_AND);
    EXPECT_FALSE(sim_VerifyVersionInfoA(&info, VER_SUITENAME, mask));
    info.dwOSVersionInfoSize = sizeof info;
    EXPECT_FALSE(sim_VerifyVersionInfoA(&info, VER_SUITENAME, 0));
    EXPECT_FALSE(sim_VerifyVersionInfoA(nullptr, VER_SUITENAME, mask));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_ARGUMENTS});
}

TEST(VerSetConditionMask, PutsThreeBitsAtThePlaceOfTheHighestType) {
    const Running running;
    EXPECT_EQ(sim_VerSetConditionMask(0, VER_SUITENAME, VER_AND), DWORDLONG{6} << 18);
    EXPECT_EQ(sim_VerSetConditionMask(1, VER_MINORVERSION | VER_SUITENAME, VER_OR), (DWORDLONG{7} << 18) | 1);
    EXPECT_EQ(sim_VerSetConditionMask(5, 0, VER_AND), 5u);
}

TEST(Hardware, AnswersWhatIsDescribedAndZeroOtherwise) {
    Station station;
    station.processors = Processors{2, 4, 21064, 6, 2054, {}};
    station.memory = Memory{5368709120, 2147352576};
    station.keyboard = Keyboard{4, 2};
    station.codePages.oem = 850;
    SYSTEM_INFO info;
    MEMORYSTATUS status{};
    {
        const Running running(station);
        GetSystemInfo(&info);
        EXPECT_EQ(info.wProcessorArchitecture, 2);
        EXPECT_EQ(info.dwNumberOfProcessors, 4u);
        EXPECT_EQ(info.dwProcessorType, 21064u);
        EXPECT_EQ(info.wProcessorLevel, 6);
        EXPECT_EQ(info.wProcessorRevision, 2054);
        GlobalMemoryStatus(&status);
        EXPECT_EQ(status.dwTotalPhys, 5368709120u);
        EXPECT_EQ(status.dwTotalVirtual, 2147352576u);
        EXPECT_EQ(GetKeyboardType(0), 4);
        EXPECT_EQ(GetKeyboardType(1), 2);
        EXPECT_EQ(GetKeyboardType(2), 0);
        EXPECT_EQ(GetOEMCP(), 850u);
    }
    const Running running;
    GetSystemInfo(&info);
    EXPECT_EQ(info.dwNumberOfProcessors, 0u);
    GlobalMemoryStatus(&status);
    EXPECT_EQ(status.dwTotalPhys, 0u);
    EXPECT_EQ(GetKeyboardType(0), 0);
    EXPECT_EQ(GetOEMCP(), 437u);
}

LONG askForPower(void* output, ULONG size) {
    return sim_CallNtPowerInformation(static_cast<POWER_INFORMATION_LEVEL>(11), nullptr, 0, output, size);
}

TEST(CallNtPowerInformation, NeedsRoomForEveryProcessor) {
    Station station;
    station.processors.emplace().currentMhz = {2400, 2401};
    const Running running(station);
    std::array<ULONG, 12> records{};
    EXPECT_EQ(askForPower(records.data(), 47), static_cast<LONG>(0xC0000023));
    EXPECT_EQ(records[2], 0u);
    EXPECT_EQ(askForPower(records.data(), 48), 0);
    EXPECT_THAT(records, testing::ElementsAre(0, 0, 2400, 0, 0, 0, 1, 0, 2401, 0, 0, 0));
    EXPECT_EQ(askForPower(nullptr, 48), static_cast<LONG>(0xC000000D));
}

TEST(CallNtPowerInformation, RefusesAnInputWhereNoneBelongs) {
    Station station;
    station.processors.emplace().currentMhz = {2400};
    const Running running(station);
    std::array<ULONG, 6> record{};
    ULONG input = 0;
    const auto level = static_cast<POWER_INFORMATION_LEVEL>(11);
    EXPECT_EQ(sim_CallNtPowerInformation(level, nullptr, 1, record.data(), sizeof record),
              static_cast<LONG>(0xC000000D));
    EXPECT_EQ(sim_CallNtPowerInformation(level, &input, 0, record.data(), sizeof record),
              static_cast<LONG>(0xC000000D));
    EXPECT_EQ(record[2], 0u);
}

TEST(CallNtPowerInformation, FailsWhenNoClockIsDescribed) {
    Station station;
    station.processors.emplace().count = 1;
    const Running running(station);
    std::array<ULONG, 6> record{};
    EXPECT_EQ(askForPower(record.data(), sizeof record), static_cast<LONG>(0xC00000BB));
}

TEST(OpenProcess, OpensTheOwnProcessAndItsTokenAndKeepsBothOpen) {
    Station station;
    station.process = Process{1234, 7};
    Running running(station);
    EXPECT_EQ(GetCurrentProcessId(), 1234u);
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, 1234);
    ASSERT_NE(process, nullptr);
    HANDLE token = nullptr;
    ASSERT_TRUE(OpenProcessToken(process, TOKEN_QUERY, &token));
    DWORD session = 0;
    DWORD size = 0;
    EXPECT_TRUE(GetTokenInformation(token, TokenSessionId, &session, sizeof session, &size));
    EXPECT_EQ(session, 7u);
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(running.machine.openHandles(HandleKind::Process).size(), 1u);
    EXPECT_EQ(running.machine.openHandles(HandleKind::Token).front().what, "token of process 1234");
}

TEST(OpenProcess, FailsForAnyOtherProcess) {
    Running running;
    EXPECT_EQ(GetCurrentProcessId(), 0u);
    EXPECT_EQ(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, 0), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    HANDLE token = nullptr;
    EXPECT_FALSE(OpenProcessToken(nullptr, TOKEN_QUERY, &token));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_THAT(running.machine.misuses(), IsEmpty());
}

TEST(OpenProcessToken, DoesNotExistOnWindows9x) {
    Station station = windows(1, 4, 10, 2222);
    station.process = Process{1234, 7};
    const Running running(station);
    HANDLE token = nullptr;
    EXPECT_FALSE(OpenProcessToken(OpenProcess(0, FALSE, 1234), TOKEN_QUERY, &token));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CALL_NOT_IMPLEMENTED});
}

TEST(GetTokenInformation, RefusesASmallBufferAndASessionThatIsNotDescribed) {
    Station station;
    station.process = Process{1234, 7};
    for (const bool isDescribed : {true, false}) {
        if (!isDescribed)
            station.process->sessionId.reset();
        const Running running(station);
        HANDLE token = nullptr;
        ASSERT_TRUE(OpenProcessToken(OpenProcess(0, FALSE, 1234), TOKEN_QUERY, &token));
        DWORD session = 5;
        DWORD size = 0;
        EXPECT_FALSE(GetTokenInformation(token, TokenSessionId, &session, isDescribed ? 3 : 4, &size));
        EXPECT_EQ(GetLastError(), isDescribed ? DWORD{ERROR_INSUFFICIENT_BUFFER} : DWORD{ERROR_INVALID_PARAMETER});
        EXPECT_EQ(session, 5u);
    }
}

}  // namespace
