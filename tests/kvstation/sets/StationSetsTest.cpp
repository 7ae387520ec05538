// What verbs say of several stations at once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "../TemporaryFolder.h"
#include "../ToolRun.h"
#include "kvstation/platform/Files.h"
#include "kvstation/sets/Collisions.h"

namespace kvstation {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using Json = nlohmann::json;

TEST(Collisions, AreOfThoseThatWouldHaveOneName) {
    Collisions collisions;
    collisions.add("pc1", "A", "A");
    collisions.add("pc2", "B", "A");
    collisions.add("pc3", "C", "D");
    collisions.add("pc4", "E", "E");
    collisions.add("pc5", "E", "E");
    const auto found = collisions.found();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].station, "A");
    EXPECT_THAT(found[0].names, ElementsAre("pc1", "pc2"));
    EXPECT_TRUE(found[0].isNew);
    EXPECT_EQ(found[1].station, "E");
    EXPECT_FALSE(found[1].isNew);
}

TEST(Collisions, ThoseOfOneNameThatAreRenamedTogetherAreNew) {
    Collisions collisions;
    collisions.add("pc1", "A", "B");
    collisions.add("pc2", "A", "B");
    ASSERT_EQ(collisions.found().size(), 1u);
    EXPECT_TRUE(collisions.found()[0].isNew);
}

class TwinStations : public testing::Test {
  protected:
    TwinStations() {
        for (const char* name : {"pc1", "pc2"})
            std::filesystem::copy(KV_STATIONS "/windows-xp-console", folder / name);
        std::filesystem::copy(KV_STATIONS "/winframe-session", folder / "pc3");
    }

    const TemporaryFolder folder;
};

// The console registers by its MAC address, 001AA03FC7E2, and by its IP address with name type 2. In the WinFrame
// session the type does not matter.
TEST_F(TwinStations, WhatIfTellsWhichWouldChangeAndWhichWouldBeOne) {
    const ProgramRun told = run({"whatif", folder / "", "--set", "KVStationType=2"});
    EXPECT_EQ(told.status, 0);
    EXPECT_THAT(told.output, StartsWith("pc1:\nszStation\n  - \"001AA03FC7E2\"\n  + \"172.20.16.45\"\n"));
    EXPECT_THAT(told.output, HasSubstr("\npc2:\nszStation\n"));
    EXPECT_THAT(told.output, EndsWith("\n2 of 3 would change\n"
                                      "One szStation for several:\n  \"172.20.16.45\": pc1, pc2\n"));
}

TEST_F(TwinStations, WhatIfTellsItInLinesOfJson) {
    const ProgramRun told = run({"whatif", folder / "", "--set", "KVStationType=3", "--ndjson"});
    std::istringstream lines(told.output);
    std::vector<Json> rows;
    for (std::string line; std::getline(lines, line);)
        rows.push_back(Json::parse(line));
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0]["name"], "pc1");
    EXPECT_EQ(rows[0]["fields"], Json::object());
    EXPECT_EQ(rows[2]["name"], "pc3");
    EXPECT_EQ(rows[3], Json::parse(R"({"szStation": "001AA03FC7E2", "stations": ["pc1", "pc2"], "isNew": false})"));
}

// Stations of which next to nothing is described: experiments on a whole one take seconds.
class BareStations : public testing::Test {
  protected:
    BareStations() {
        for (const char* name : {"pc1", "pc2"}) {
            std::filesystem::create_directory(folder / name);
            writeFile((folder / name) + "/registry.reg", "REGEDIT4\r\n");
            writeFile((folder / name) + "/station.json", R"({"keyboard": {"type": 4}})");
        }
    }

    const TemporaryFolder folder;
};

TEST_F(BareStations, ExplainTellsTheCausesOfEach) {
    const std::string one = run({"explain", "dwKeyboardType", folder / "pc1"}).output;
    EXPECT_THAT(one, HasSubstr("\n  gives    4 "));
    const ProgramRun told = run({"explain", "dwKeyboardType", folder / "pc1", folder / "pc2"});
    EXPECT_EQ(told.status, 0);
    EXPECT_EQ(told.output, "pc1:\n" + one + "\npc2:\n" + one + "\n");
}

TEST_F(BareStations, ExplainTellsTheCausesOfEachInLinesOfJson) {
    const Json one = Json::parse(run({"explain", "dwKeyboardType", folder / "pc1", "--json"}).output);
    const ProgramRun told = run({"explain", "dwKeyboardType", folder / "pc*", "--ndjson"});
    std::istringstream lines(told.output);
    for (const char* name : {"pc1", "pc2"}) {
        std::string line;
        ASSERT_TRUE(std::getline(lines, line));
        EXPECT_EQ(Json::parse(line)["name"], name);
        EXPECT_EQ(Json::parse(line)["causes"], one);
    }
}

TEST_F(TwinStations, ThoseOfOneNameInAListCollideByTheirPaths) {
    std::filesystem::create_directory(folder / "branch");
    std::filesystem::copy(KV_STATIONS "/windows-xp-console", folder / "branch/pc1");
    writeFile(folder / "list", (folder / "pc1") + "\n" + (folder / "branch/pc1") + "\n");
    const ProgramRun told = run({"whatif", "--from", folder / "list", "--set", "KVStationType=2"});
    EXPECT_EQ(told.status, 0);
    EXPECT_THAT(told.output,
                EndsWith("  \"172.20.16.45\": " + (folder / "pc1") + ", " + (folder / "branch/pc1") + "\n"));
}

TEST_F(TwinStations, OneThatIsBadCostsALine) {
    std::filesystem::remove(folder / "pc2/station.json");
    const ProgramRun told = run({"whatif", folder / "pc1", folder / "pc2", "--set", "KVStationType=2"});
    EXPECT_EQ(told.status, 1);
    EXPECT_THAT(told.output, EndsWith("\n1 of 1 would change\n"));
    EXPECT_EQ(told.errors,
              "kvstation: " + (folder / "pc2") + "/station.json cannot be read: No such file or directory (error 2)\n");
}

}  // namespace
}  // namespace kvstation
