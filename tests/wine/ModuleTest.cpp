// The real kvcstat64.dll: loading, one call, what it writes and what it leaves open.
#include <algorithm>
#include <string>

#include "tests/kvcstat/common/AbsentStringIds.h"
#include "tests/wine/ProcessUsage.h"
#include "tests/wine/StationModule.h"

namespace {

using kvtest::CountOpenHandles;
using kvtest::GuardedRecord;
using kvtest::HandleCounts;
using kvtest::ReleaseFolder;
using kvtest::StationModule;

constexpr char kPattern = '\xA5';

class ModuleTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(module.IsLoaded()) << "error " << GetLastError(); }

    StationModule module{ReleaseFolder()};
    GuardedRecord record;
};

TEST_F(ModuleTest, FillsARecordOfThisStation) {
    record.Fill('\0');
    module.Collect(record.data());

    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    const std::string os = "Windows NT " + std::to_string(version.dwMajorVersion) + "." +
                           std::to_string(version.dwMinorVersion) + " (Build " + std::to_string(version.dwBuildNumber) +
                           ")";
    EXPECT_EQ(record.Text(&STATIONDATA::szOS).substr(0, os.size()), os);

    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    EXPECT_EQ(record.Number(&STATIONDATA::dwSessionId), session);
    EXPECT_EQ(record.Number(&STATIONDATA::dwTSClientSession), 0u);
    EXPECT_EQ(record.Text(&STATIONDATA::szVCDVersion), "");
}

TEST_F(ModuleTest, LeavesTheReservedAreasAndTheBytesBehindItsTextsUntouched) {
    record.Fill(kPattern);
    module.Collect(record.data());
    for (const kvtest::RecordPlace& area : kvtest::RecordPlace::reserved())
        EXPECT_EQ(record.At(area), std::string(area.width, kPattern)) << area.offset;
    EXPECT_EQ(record.At(&STATIONDATA::szOS).back(), kPattern);
    EXPECT_EQ(record.At(&STATIONDATA::szVCDVersion),
              '\0' + std::string(sizeof(STATIONDATA::szVCDVersion) - 1, kPattern));
}

TEST_F(ModuleTest, TwoCallsLeaveTwoProcessAndTwoTokenHandlesAndNothingElse) {
    module.Collect(record.data());  // what Windows' own libraries open once
    const HandleCounts before = CountOpenHandles();
    module.Collect(record.data());
    module.Collect(record.data());
    const HandleCounts after = CountOpenHandles();
    EXPECT_EQ(after.processes - before.processes, 2u);
    EXPECT_EQ(after.tokens - before.tokens, 2u);
    EXPECT_EQ(after.all - before.all, 4u);
}

TEST_F(ModuleTest, DefaultServerSessionsFollowTheirVariable) {
    SetEnvironmentVariableA("KVTSDefaultSrvSessions", "12abc");
    record.Fill('\0');
    module.Collect(record.data());
    SetEnvironmentVariableA("KVTSDefaultSrvSessions", nullptr);
    EXPECT_EQ(record.Number(&STATIONDATA::dwTSDefaultSrvSessions), 12u);
}

TEST_F(ModuleTest, PublishesTheOperatingSystemsNameToTheProcess) {
    SetEnvironmentVariableA("KVOS", nullptr);
    module.Collect(record.data());
    char name[64] = {};
    EXPECT_NE(GetEnvironmentVariableA("KVOS", name, sizeof name), 0u);
    EXPECT_EQ(std::string(name).substr(0, 2), "NT");
}

TEST_F(ModuleTest, CarriesItsStringTableAndVersionAsResources) {
    const struct {
        UINT id;
        const char* text;
    } rows[] = {
        {16002, "Microsoft Terminal Server"},
        {16006, "%s"},
        {16028, "Olivetti \"ICO\" keyboard (102 keys) "},
        {16037, "Firefox"},
    };
    for (const auto& row : rows) {
        char text[128] = {};
        EXPECT_GT(LoadStringA(module.Library(), row.id, text, sizeof text), 0) << row.id;
        EXPECT_STREQ(text, row.text);
    }
    char text[128] = {};
    for (const UINT id : kvtest::absentStringIds())
        EXPECT_EQ(LoadStringA(module.Library(), id, text, sizeof text), 0) << id;
    EXPECT_NE(FindResourceA(module.Library(), MAKEINTRESOURCEA(1), reinterpret_cast<LPCSTR>(RT_VERSION)), nullptr);
}

// A site's own wrapper stands in the folder "site" in place of ours; it counts how often it is started and stopped.
TEST(ModuleLifeTest, EachLoadStartsTheSitesWrapperOnceAndEachUnloadStopsItOnce) {
    const std::string site = KV_SITE_FOLDER;
    const HMODULE wrapper = LoadLibraryExA((site + "KVTSWRP64.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    ASSERT_NE(wrapper, nullptr);
    const auto count = [wrapper](const char* name) {
        return *reinterpret_cast<const int*>(reinterpret_cast<void (*)()>(GetProcAddress(wrapper, name)));
    };
    for (int loads = 1; loads <= 3; ++loads) {
        {
            const StationModule module(site);
            ASSERT_TRUE(module.IsLoaded());
            EXPECT_EQ(count("g_starts"), loads);
            EXPECT_EQ(count("g_stops"), loads - 1);
            GuardedRecord record;
            module.Collect(record.data());
        }
        EXPECT_EQ(count("g_starts"), loads);
        EXPECT_EQ(count("g_stops"), loads);
    }
    FreeLibrary(wrapper);
}

}  // namespace
