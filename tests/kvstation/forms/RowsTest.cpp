// Many records in the forms that they are given out in.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "../Samples.h"
#include "../TemporaryFolder.h"
#include "../ToolRun.h"
#include "kvstation/forms/RowForm.h"
#include "kvstation/forms/RowTable.h"
#include "kvstation/platform/Files.h"
#include "kvstation/rows/RowJson.h"
#include "kvstation/sets/Database.h"

namespace kvstation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using OrderedJson = nlohmann::ordered_json;

StationRow sampleRow() {
    StationRow row{"branch/pc1", "records/branch/pc1.bin", 1252, {.record = Record(sampleBytes())}};
    row.report.collected = simwin::Collected{.at = "2026-11-22T12:00:00Z", .library = "1.2.0.0", .tool = ""};
    return row;
}

const FieldList kTwo = {findField("szStation"), findField("dwSessionId")};

TEST(RowJson, ALineTellsWhatARowIsAndItsFields) {
    RowJsonWriter writer(kTwo);
    const std::string line = writer.line(sampleRow());
    EXPECT_THAT(line, StartsWith("{\"name\":\"branch/pc1\",\"source\":\"records/branch/pc1.bin\",\"codePage\":1252,"));
    EXPECT_THAT(line, testing::EndsWith("}\n"));
    const OrderedJson json = OrderedJson::parse(line);
    EXPECT_EQ(json["collected"], OrderedJson::parse(R"({"at": "2026-11-22T12:00:00Z", "library": "1.2.0.0"})"));
    EXPECT_EQ(json["fields"], OrderedJson::parse(R"({"szStation": "PC-LAB3", "dwSessionId": 4294967294})"));
}

TEST(RowJson, NothingOfOneLineStaysInTheNext) {
    RowJsonWriter writer(kTwo);
    writer.line(sampleRow());
    const OrderedJson json = OrderedJson::parse(writer.line({"b", "b.bin", 437, {}}));
    EXPECT_EQ(json["name"], "b");
    EXPECT_EQ(json["codePage"], 437);
    EXPECT_TRUE(json["collected"].is_null());
    EXPECT_EQ(json["fields"], OrderedJson::parse(R"({"szStation": "", "dwSessionId": 0})"));
}

std::string csvLine(const StationRow& row, const FieldList& fields) {
    return kCsvForm.make(fields, {})->encode(row);
}

TEST(RowCsv, CellsWithCommasQuotesAndEndsOfLinesStandInQuotes) {
    RecordBytes bytes = sampleBytes();
    put(bytes, &STATIONDATA::szStation, "A,\"B\"\r\nC");
    StationRow row = sampleRow();
    row.report.record = Record(bytes);
    EXPECT_EQ(csvLine(row, kTwo), "branch/pc1,records/branch/pc1.bin,1252," + std::string(rowTool()) +
                                      ",2026-11-22T12:00:00Z,1.2.0.0,,\"A,\"\"B\"\"\r\nC\",4294967294\r\n");
}

// As in JSON, where another library puts it.
TEST(RowCsv, WhatIsNoCharacterIsTheReplacementCharacter) {
    const std::string replacement = "\xEF\xBF\xBD";
    const auto cell = [](const std::string& text) {
        StationRow row = sampleRow();
        row.report.record[findField("szStation")].text = text;
        const std::string line = csvLine(row, {findField("szStation")});
        EXPECT_EQ(
            nlohmann::json::parse(nlohmann::json(text).dump(-1, ' ', false, OrderedJson::error_handler_t::replace)),
            line.substr(line.rfind(',') + 1, line.size() - line.rfind(',') - 3));
        return line.substr(line.rfind(',') + 1);
    };
    EXPECT_EQ(cell("A\xE4"), "A" + replacement + "\r\n");
    EXPECT_EQ(cell("A\xF0\x9F"), "A" + replacement + "\r\n");
    EXPECT_EQ(cell("\xF0\x9F\x98-"), replacement + "-\r\n");
    EXPECT_EQ(cell("\xE0\x80-"), replacement + replacement + "-\r\n");
    EXPECT_EQ(cell("\xED\xA0\x80"), replacement + replacement + replacement + "\r\n");
    EXPECT_EQ(cell("\x80\xFF"), replacement + replacement + "\r\n");
}

TEST(RowTable, ColumnsAreAsWideAsTheirWidestCell) {
    TableWriter table(kTwo);
    EXPECT_EQ(table.add({"pc1", "LONG-NAME-OF-IT", "1"}), "");
    EXPECT_EQ(table.add({"\xE6\x9D\x8E", "B", ""}), "");
    EXPECT_EQ(table.finish(),
              "name  szStation        dwSessionId\n"
              "pc1   LONG-NAME-OF-IT  1\n"
              "\xE6\x9D\x8E    B\n");
}

TEST(RowTable, BehindTheFirstRowsLinesComeAtOnce) {
    TableWriter table({});
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += table.add({"a"});
    EXPECT_THAT(text, StartsWith("name\na\n"));
    EXPECT_EQ(table.add({"wider"}), "wider\n");
    EXPECT_EQ(table.finish(), "");
}

class RecordSet : public testing::Test {
  protected:
    RecordSet() {
        RecordBytes bytes = sampleBytes();
        for (const char* name : {"pc1", "pc2"}) {
            std::memcpy(bytes.data(), name, 4);
            std::filesystem::create_directories(folder / "records");
            writeFile(folder / (std::string("records/") + name + ".bin"), {bytes.data(), bytes.size()});
        }
    }

    const TemporaryFolder folder;
    const std::string records = folder / "records";
};

TEST_F(RecordSet, IsALineForEachRecord) {
    const ProgramRun told = run({"decode", records, "--ndjson", "--field", "szStation", "--jobs", "2"});
    EXPECT_EQ(told.status, 0);
    EXPECT_EQ(told.errors, "");
    const std::vector<std::string> rows = linesOf(told.output);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(OrderedJson::parse(rows[0])["name"], "pc1");
    EXPECT_EQ(OrderedJson::parse(rows[0])["source"], records + "/pc1.bin");
    EXPECT_EQ(OrderedJson::parse(rows[1])["fields"], OrderedJson::parse(R"({"szStation": "pc2"})"));
}

TEST_F(RecordSet, IsLinesBelowTheirColumns) {
    const ProgramRun told = run({"decode", records, "--csv", "--field", "szStation", "--field", "dwSessionId"});
    EXPECT_THAT(told.output,
                StartsWith("name,source,codePage,tool,collectedAt,collectedByLibrary,collectedByTool,szStation,"
                           "dwSessionId\r\npc1," +
                           records + "/pc1.bin,"));
}

TEST_F(RecordSet, IsATableOfTheFieldsAskedFor) {
    EXPECT_EQ(run({"decode", records, "--field", "szStation", "--field", "szIPAddress"}).output,
              "name  szStation  szIPAddress\npc1   pc1        10.0.0.5\npc2   pc2        10.0.0.5\n");
}

TEST_F(RecordSet, IsEachRecordBelowItsNameOtherwise) {
    EXPECT_EQ(run({"decode", records}).output, "pc1:\n" + run({"decode", records + "/pc1.bin"}).output + "\npc2:\n" +
                                                   run({"decode", records + "/pc2.bin"}).output + "\n");
}

TEST_F(RecordSet, ABadOneCostsALineAndTheStatus) {
    writeFile(records + "/pc15.bin", "short");
    const ProgramRun told = run({"decode", records, "--csv", "--field", "szStation"});
    EXPECT_EQ(told.status, 1);
    EXPECT_EQ(linesOf(told.output).size(), 3u);
    EXPECT_EQ(told.errors, "kvstation: " + records +
                               "/pc15.bin is no station record: it is no JSON object and has 5 bytes, where a raw "
                               "record has " +
                               std::to_string(KVCSTAT_RECORD_SIZE) + "\n");
}

TEST_F(RecordSet, OfStandardInputAndFilesKeepsTheirOrder) {
    const ProgramRun told = runProgram({"/bin/sh", "-c",
                                        "exec \"$0\" decode \"$1/pc2.bin\" - \"$1/pc1.bin\" --field szStation "
                                        "<\"$1/pc1.bin\"",
                                        KVSTATION_PROGRAM, records});
    EXPECT_EQ(told.output, "name  szStation\npc2   pc2\n-     pc1\npc1   pc1\n");
}

TEST_F(RecordSet, OneRecordFromStandardInputIsShownByItself) {
    const ProgramRun told = runProgram(
        {"/bin/sh", "-c", "exec \"$0\" decode - --field szStation <\"$1/pc1.bin\"", KVSTATION_PROGRAM, records});
    EXPECT_EQ(told.output, "pc1\n");
    EXPECT_EQ(told.status, 0);
}

TEST_F(RecordSet, RefusesWhatThereIsOfOneRecordAlone) {
    const auto refusal = [&](const std::string& option) {
        const ProgramRun refused = run({"decode", records, option, folder / "x"});
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(refused.output, "");
        return refused.errors;
    };
    EXPECT_EQ(refusal("--html"), "kvstation: --html writes one record\n");
    EXPECT_EQ(refusal("--raw"), "kvstation: --raw writes one record\n");
    EXPECT_EQ(run({"decode", records, "--json"}).errors,
              "kvstation: --json prints one record; --ndjson prints one a line\n");
}

TEST_F(RecordSet, FillsATableInAnSqliteFileAndReplacesThoseOfTheSameNames) {
    const std::string file = folder / "fleet.db";
    ASSERT_EQ(run({"decode", records, "--sqlite", file}).status, 0);
    RecordBytes bytes = sampleBytes();
    std::memcpy(bytes.data(), "NEW", 4);
    writeFile(records + "/pc2.bin", {bytes.data(), bytes.size()});
    std::filesystem::remove(records + "/pc1.bin");
    const ProgramRun second = run({"decode", records, "--sqlite", file});
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.output + second.errors, "");
    const Database database(file, Database::Access::Read);
    Statement rows(database, "SELECT name, szStation, dwSessionId, collectedAt FROM stations ORDER BY name");
    ASSERT_TRUE(rows.step());
    EXPECT_EQ(rows.text(0) + "," + rows.text(1), "pc1,pc1");
    ASSERT_TRUE(rows.step());
    EXPECT_EQ(rows.text(0) + "," + rows.text(1), "pc2,NEW");
    EXPECT_EQ(rows.number(2), 4294967294);
    EXPECT_TRUE(rows.isNothing(3));
    EXPECT_FALSE(rows.step());
}

TEST_F(RecordSet, HalfACharacterIsABlobInAnSqliteFile) {
    RecordBytes bytes = sampleBytes();
    std::memcpy(bytes.data(), "A\x83", 3);
    writeFile(records + "/pc1.bin", {bytes.data(), bytes.size()});
    const std::string file = folder / "fleet.db";
    ASSERT_EQ(run({"decode", records + "/pc1.bin", "--code-page", "932", "--sqlite", file}).status, 0);
    const Database database(file, Database::Access::Read);
    Statement rows(database, "SELECT szStation, szIPAddress FROM stations");
    ASSERT_TRUE(rows.step());
    EXPECT_TRUE(rows.isBytes(0));
    EXPECT_EQ(rows.text(0), "A\x83");
    EXPECT_FALSE(rows.isBytes(1));
}

TEST_F(RecordSet, AnSqliteFileIsAFileHoweverItIsCalled) {
    const ProgramRun told = runProgram(
        {"/bin/sh", "-c", "cd \"$1\" && exec \"$0\" decode pc1.bin --sqlite :memory:", KVSTATION_PROGRAM, records});
    EXPECT_EQ(told.status, 0) << told.errors;
    EXPECT_TRUE(std::filesystem::exists(records + "/:memory:"));
    EXPECT_THAT(run({"decode", records, "--sqlite", "-"}).errors, HasSubstr("cannot go to standard output"));
}

TEST_F(RecordSet, AnSqliteFileOfAnotherFormStaysAsItIs) {
    const std::string file = folder / "fleet.db";
    writeFile(file, std::string(4096, 'x'));
    const ProgramRun refused = run({"decode", records, "--sqlite", file});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors, "kvstation: " + file + ": file is not a database (SQLite error 26)\n");
    EXPECT_EQ(readFile(file, 1 << 20), std::string(4096, 'x'));
}

TEST(StationSet, SaysOfEachStationWhatItSaysOfOne) {
    const ProgramRun told = run({"simulate", KV_STATIONS, "--ndjson"});
    EXPECT_EQ(told.status, 0);
    std::vector<std::string> names;
    for (const std::string& line : linesOf(told.output)) {
        const OrderedJson row = OrderedJson::parse(line);
        names.push_back(row["name"]);
        if (names.back() != "windows-98-japanese" && names.back() != "windows-xp-console")
            continue;
        OrderedJson one = OrderedJson::parse(run({"simulate", row["source"].get<std::string>(), "--json"}).output);
        one.erase("collected");
        EXPECT_EQ(row["fields"], one) << names.back();
        EXPECT_EQ(row["codePage"], names.back() == "windows-98-japanese" ? 932 : 1252);
    }
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_THAT(names, testing::IsSupersetOf({"windows-98-japanese", "windows-xp-console"}));
}

TEST(StationSet, TakesWhatIsToBeDifferentForAll) {
    const ProgramRun told =
        run({"simulate", KV_STATIONS "/windows-xp-*", "--set", "KVIP=10.9.8.7", "--field", "szIPAddress"});
    EXPECT_THAT(linesOf(told.output), ElementsAre(StartsWith("name"), testing::EndsWith(" 10.9.8.7"), testing::_));
}

}  // namespace
}  // namespace kvstation
