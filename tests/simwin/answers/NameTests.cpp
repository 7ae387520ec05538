// Users, computer, environment, session and profile.
#include <gmock/gmock.h>

#include <array>

#include "framework/String.h"
#include "simwin/calls/Calls.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using testing::ElementsAre;
using testing::IsEmpty;

Station namesDescribed() {
    Station station;
    station.user.name = "jdoe";
    station.user.samCompatible = "LAB\\jdoe";
    station.user.principal = "jdoe@lab.example";
    station.user.network = "JDOE";
    station.computerName = "Pc-Lab3";
    station.network.domain = "LAB";
    station.environment = {{"SystemRoot", "C:\\WINDOWS"}, {"Empty", ""}};
    station.session.clientName = CompanionText{"THIN07", 1, true};
    station.session.clientAddress = CompanionText{"10.9.8.7", 0, true};
    station.session.domain = CompanionText{"ABCDEF", 1, false};
    station.session.id = 3;
    return station;
}

class Names : public testing::Test {
  protected:
    Running running{namesDescribed()};
    std::array<char, 32> buffer{};
    DWORD size = 32;
};

using GetUserNameATest = Names;
using GetUserNameExATest = Names;
using GetComputerNameATest = Names;
using GetEnvironmentVariableATest = Names;
using KVEnvironment = Names;
using KVNetApi = Names;
using SessionWrapper = Names;

TEST_F(GetUserNameATest, CountsTheTerminator) {
    EXPECT_TRUE(GetUserNameA(buffer.data(), &size));
    EXPECT_STREQ(buffer.data(), "jdoe");
    EXPECT_EQ(size, 5u);
    size = 4;
    EXPECT_FALSE(GetUserNameA(buffer.data(), &size));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(size, 5u);
    EXPECT_FALSE(GetUserNameA(nullptr, &size));
    EXPECT_EQ(size, 5u);
    EXPECT_FALSE(GetUserNameA(buffer.data(), nullptr));
}

TEST_F(GetUserNameExATest, CountsTheTerminatorOnlyWhenTheBufferIsTooSmall) {
    EXPECT_TRUE(GetUserNameExA(NameSamCompatible, buffer.data(), &size));
    EXPECT_STREQ(buffer.data(), "LAB\\jdoe");
    EXPECT_EQ(size, 8u);
    EXPECT_FALSE(GetUserNameExA(NameSamCompatible, buffer.data(), &size));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(size, 9u);
    size = 0;
    EXPECT_FALSE(GetUserNameExA(NameUserPrincipal, nullptr, &size));
    EXPECT_EQ(size, 17u);
}

TEST_F(GetUserNameExATest, MapsOnlyTheFormsThatAreDescribed) {
    for (const EXTENDED_NAME_FORMAT format : {NameDisplay, NameUnknown, NameCanonical}) {
        EXPECT_FALSE(GetUserNameExA(format, buffer.data(), &size));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_NONE_MAPPED});
        EXPECT_EQ(size, 32u);
    }
    EXPECT_FALSE(GetUserNameExA(NameSamCompatible, buffer.data(), nullptr));
}

TEST_F(GetComputerNameATest, CountsTheTerminatorOnlyWhenTheBufferIsTooSmall) {
    EXPECT_TRUE(GetComputerNameA(buffer.data(), &size));
    EXPECT_STREQ(buffer.data(), "Pc-Lab3");
    EXPECT_EQ(size, 7u);
    EXPECT_FALSE(GetComputerNameA(buffer.data(), &size));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BUFFER_OVERFLOW});
    EXPECT_EQ(size, 8u);
}

TEST(NamesNotDescribed, Fail) {
    const Running running;
    std::array<char, 32> buffer = {'x'};
    DWORD size = 32;
    EXPECT_FALSE(GetUserNameA(buffer.data(), &size));
    EXPECT_FALSE(GetComputerNameA(buffer.data(), &size));
    CString name("before");
    EXPECT_EQ(KVGetUserName(name), 0);
    EXPECT_EQ(KVNDSWhoAmI("", name), 0);
    EXPECT_STREQ(name, "before");
    KVGetDomainName(name);
    EXPECT_STREQ(name, "") << "a station in no domain";
    EXPECT_EQ(ZRTSQueryClientName(buffer.data(), 32), 0);
    EXPECT_EQ(ZRTSQuerySessionID(), 0);
    EXPECT_EQ(buffer[0], 'x');
    EXPECT_EQ(size, 32u);
}

TEST_F(KVNetApi, FillsTheCallersString) {
    CString name;
    EXPECT_NE(KVGetUserName(name), 0);
    EXPECT_STREQ(name, "JDOE");
    KVGetDomainName(name);
    EXPECT_STREQ(name, "LAB");
}

TEST_F(GetEnvironmentVariableATest, TellsTheLengthOrTheRoomNeeded) {
    EXPECT_EQ(GetEnvironmentVariableA("systemROOT", buffer.data(), 32), 10u);
    EXPECT_STREQ(buffer.data(), "C:\\WINDOWS");
    buffer[0] = 'x';
    EXPECT_EQ(GetEnvironmentVariableA("systemROOT", buffer.data(), 10), 11u);
    EXPECT_EQ(buffer[0], 'x');
    EXPECT_EQ(GetEnvironmentVariableA("systemROOT", nullptr, 0), 11u);
    EXPECT_EQ(GetEnvironmentVariableA("Empty", buffer.data(), 32), 0u);
    EXPECT_STREQ(buffer.data(), "");
}

TEST_F(GetEnvironmentVariableATest, KnowsNoOtherVariable) {
    for (const char* name : {"None", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(GetEnvironmentVariableA(name, buffer.data(), 32), 0u);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_ENVVAR_NOT_FOUND});
    }
}

TEST_F(KVEnvironment, CutsALongValueAndTerminatesIt) {
    buffer.fill('x');
    EXPECT_NE(KVGetEnv("SystemRoot", buffer.data(), 5), 0);
    EXPECT_STREQ(buffer.data(), "C:\\W");
    EXPECT_NE(KVGetEnv("SystemRoot", nullptr, 0), 0);
    EXPECT_NE(KVGetEnv("Empty", buffer.data(), 5), 0);
    EXPECT_STREQ(buffer.data(), "");
    EXPECT_EQ(KVGetEnv("None", buffer.data(), 5), 0);
    EXPECT_EQ(KVGetEnv(nullptr, buffer.data(), 5), 0);
}

char* writable(const char* text) {
    return const_cast<char*>(text);
}

TEST_F(KVEnvironment, ChangesTheProcessAndTellsWhatWasSet) {
    EXPECT_NE(KVSetEnv(writable("KVOS"), writable("NT4")), 0);
    EXPECT_NE(KVSetEnv(writable("SYSTEMROOT"), writable("D:\\")), 0);
    EXPECT_NE(KVSetEnv(writable("KVOS"), writable("NT5")), 0);
    EXPECT_EQ(GetEnvironmentVariableA("SystemRoot", buffer.data(), 32), 3u);
    EXPECT_STREQ(buffer.data(), "D:\\");
    ASSERT_EQ(running.machine.variablesSet().size(), 2u);
    EXPECT_EQ(running.machine.variablesSet()[0].name, "KVOS");
    EXPECT_EQ(running.machine.variablesSet()[0].value, "NT5");
    EXPECT_EQ(running.machine.variablesSet()[1].name, "SYSTEMROOT");
}

TEST_F(KVEnvironment, RemovesAVariableByNullAndKeepsAnEmptyOne) {
    EXPECT_NE(KVSetEnv(writable("SystemRoot"), nullptr), 0);
    EXPECT_EQ(KVGetEnv("SystemRoot", buffer.data(), 32), 0);
    EXPECT_NE(KVSetEnv(writable("SystemRoot"), writable("")), 0);
    EXPECT_NE(KVGetEnv("SystemRoot", buffer.data(), 32), 0);
    EXPECT_EQ(KVSetEnv(nullptr, writable("a")), 0);
    EXPECT_EQ(KVSetEnv(writable(""), writable("a")), 0);
    EXPECT_EQ(KVSetEnv(writable("A=B"), writable("a")), 0);
}

TEST_F(SessionWrapper, GivesTextResultAndNoMoreThanTheBufferHolds) {
    EXPECT_EQ(ZRTSWRPInit(), 1);
    EXPECT_EQ(ZRTSQueryClientName(buffer.data(), 32), 1);
    EXPECT_STREQ(buffer.data(), "THIN07");
    EXPECT_EQ(ZRTSQueryClientName(buffer.data(), 4), 1);
    EXPECT_STREQ(buffer.data(), "THI");
    EXPECT_EQ(ZRTSQueryIPAddress(buffer.data(), 32), 0);
    EXPECT_STREQ(buffer.data(), "10.9.8.7");
    EXPECT_EQ(ZRTSQuerySessionID(), 3);
    EXPECT_EQ(ZRTSQueryClientName(nullptr, 32), 0);
    EXPECT_EQ(ZRTSQueryClientName(buffer.data(), 0), 0);
    EXPECT_EQ(ZRTSQueryClientName(buffer.data(), -1), 0);
    EXPECT_EQ(ZRTSWRPFree(), 1);
}

TEST_F(SessionWrapper, LeavesATextOpenWhereItIsDescribedSo) {
    buffer.fill('x');
    EXPECT_EQ(ZRTSDomainName(buffer.data(), 32), 1);
    EXPECT_EQ(std::string(buffer.data(), 8), "ABCDEFxx");
    buffer.fill('x');
    EXPECT_EQ(ZRTSDomainName(buffer.data(), 4), 1);
    EXPECT_EQ(std::string(buffer.data(), 6), "ABCDxx");
}

TEST(WFQuerySessionInformationA, GivesTheClientNameInABufferThatStaysOpen) {
    Station station;
    station.citrix.emplace().clientName = CompanionText{"THIN08", 1, true};
    Running running(station);
    char* name = nullptr;
    DWORD bytes = 0;
    EXPECT_EQ(sim_WFQuerySessionInformationA(nullptr, 0xFFFFFFFF, 10, &name, &bytes), 1);
    EXPECT_STREQ(name, "THIN08");
    EXPECT_EQ(bytes, 7u);
    EXPECT_EQ(running.machine.openHandles(HandleKind::CitrixBuffer).size(), 1u);
    EXPECT_EQ(sim_WFQuerySessionInformationA(nullptr, 0xFFFFFFFF, 9, &name, &bytes), 0);
    EXPECT_EQ(sim_WFQuerySessionInformationA(nullptr, 5, 10, &name, &bytes), 0);
    EXPECT_EQ(sim_WFQuerySessionInformationA(nullptr, 0xFFFFFFFF, 10, nullptr, &bytes), 0);
}

TEST(WFQuerySessionInformationA, FailsWithoutAClientName) {
    Station station;
    station.citrix.emplace();
    const Running running(station);
    char* name = nullptr;
    DWORD bytes = 0;
    EXPECT_EQ(sim_WFQuerySessionInformationA(nullptr, 0xFFFFFFFF, 10, &name, &bytes), 0);
    EXPECT_EQ(name, nullptr);
}

TEST(GetPrivateProfileStringA, ReadsTheModulesOwnFile) {
    Station station;
    station.profile = {{"windows", "device", "HP,winspool"}, {"windows", "quoted", "\"a \""}};
    const Running running(station);
    std::array<char, 32> buffer{};
    const auto read = [&](const char* section, const char* entry, DWORD size, const char* file) {
        buffer.fill('x');
        const auto length = GetPrivateProfileStringA(section, entry, "none  ", buffer.data(), size, file);
        EXPECT_EQ(static_cast<std::size_t>(length), std::string(buffer.data()).size());
        return std::string(buffer.data());
    };
    EXPECT_EQ(read("Windows", "DEVICE", 32, "kvcstat64.ini"), "HP,winspool");
    EXPECT_EQ(read("windows", "device", 32, "C:\\WINDOWS\\KVCSTAT64.INI"), "HP,winspool");
    EXPECT_EQ(read("windows", "quoted", 32, "kvcstat64.ini"), "a ");
    EXPECT_EQ(read("windows", "device", 3, "kvcstat64.ini"), "HP");
    EXPECT_EQ(read("windows", "port", 32, "kvcstat64.ini"), "none");
    EXPECT_EQ(read("windows", "device", 32, "win.ini"), "none");
    EXPECT_EQ(read(nullptr, nullptr, 32, nullptr), "none");
    EXPECT_EQ(GetPrivateProfileStringA("windows", "device", nullptr, nullptr, 0, "kvcstat64.ini"), 0);
}

}  // namespace
