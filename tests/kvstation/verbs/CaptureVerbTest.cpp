// The verb "capture" of the built program, on this very computer.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "framework/Windows.h"
#include "tests/kvstation/RunningProgram.h"
#include "tests/wine/NetworkAdapters.h"

namespace kvtest {
namespace {

namespace fs = std::filesystem;
using kvstation::ProgramRun;

class CaptureVerb : public testing::Test {
  protected:
    CaptureVerb() { AwaitNetworkAdapters(); }
    ~CaptureVerb() override {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    const fs::path folder = fs::temp_directory_path() / ("kvstation-capture-" + std::to_string(GetCurrentProcessId()));
};

ProgramRun run(std::vector<std::string> words) {
    words.insert(words.begin(), KVSTATION_PROGRAM);
    return kvstation::runProgram(words);
}

// Without the two fields that go their own way on a machine that is in use, and without the time.
nlohmann::json recordOf(const ProgramRun& shown) {
    EXPECT_EQ(shown.status, 0) << shown.errors;
    nlohmann::json record = nlohmann::json::parse(shown.output);
    record.erase("szFixedDrives");
    record.erase("dwCurrentMhz");
    EXPECT_EQ(record["collected"].erase("at"), 1u);
    return record;
}

TEST_F(CaptureVerb, WritesAStationThatIsSimulatedAsThisComputerIsShown) {
    const ProgramRun captured = run({"capture", folder.string()});
    EXPECT_EQ(captured.status, 0) << captured.errors;
    EXPECT_EQ(recordOf(run({"simulate", folder.string(), "--json"})), recordOf(run({"show", "--json"})));
}

// A replay would ask for the name of the address that was published, in place of the address of the name.
TEST_F(CaptureVerb, WritesVariablesAsTheyWereBeforeTheCollectionPublishedItsOwn) {
    SetEnvironmentVariableA("KVUser", "somebody");
    SetEnvironmentVariableA("KVIP", nullptr);
    const ProgramRun captured = run({"capture", folder.string()});
    SetEnvironmentVariableA("KVUser", nullptr);
    EXPECT_EQ(captured.status, 0) << captured.errors;
    const nlohmann::json station = nlohmann::json::parse(std::ifstream(folder / "station.json"));
    EXPECT_TRUE(station["environment"].contains("USERDOMAIN"));
    EXPECT_FALSE(station["environment"].contains("KVIP"));
    EXPECT_EQ(station["environment"]["KVUser"], "somebody");
}

// As an option of other Windows programs does; under Wine it is a path like any.
TEST_F(CaptureVerb, TakesAPathThatBeginsWithASlash) {
    const ProgramRun refused = run({"simulate", "/no/station"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors, testing::StartsWith("kvstation: /no/station is no folder; "));
}

TEST_F(CaptureVerb, OfARedactedStationIsSimulatedToo) {
    const ProgramRun captured = run({"capture", "--redact", folder.string()});
    EXPECT_EQ(captured.status, 0) << captured.errors;
    const nlohmann::json redacted = recordOf(run({"simulate", folder.string(), "--json"}));
    const nlohmann::json shown = recordOf(run({"show", "--json"}));
    EXPECT_NE(redacted["szStation"], shown["szStation"]);
    EXPECT_NE(redacted["szUserName"], shown["szUserName"]);
    EXPECT_EQ(redacted["szOS"], shown["szOS"]);
    EXPECT_EQ(redacted["collected"], shown["collected"]);
}

}  // namespace
}  // namespace kvtest
