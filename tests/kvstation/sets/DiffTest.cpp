// What differs between sets of records.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "../Samples.h"
#include "../TemporaryFolder.h"
#include "../ToolRun.h"
#include "kvstation/platform/Files.h"
#include "kvstation/sets/Database.h"
#include "kvstation/sets/Unsteady.h"

namespace kvstation {
namespace {

using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::json;

Record withDrives(const std::string& drives) {
    Record record;
    record[findField("szFixedDrives")].text = drives;
    return record;
}

bool isOfTheMoment(const std::string& left, const std::string& right) {
    return differsByTheMoment(withDrives(left), withDrives(right), findField("szFixedDrives"));
}

TEST(Unsteady, FreeSpaceIsOfTheMomentAndADriveIsNot) {
    EXPECT_TRUE(isOfTheMoment("C(SYS):(NTFS:152625 MB 41% free) ;", "C(SYS):(NTFS:152625 MB 9% free) ;"));
    EXPECT_FALSE(isOfTheMoment("C(SYS):(NTFS:152625 MB 41% free) ;", "C(SYS):(NTFS:152626 MB 41% free) ;"));
    EXPECT_FALSE(isOfTheMoment("C(SYS):(NTFS:152625 MB 41% free) ;", "D(SYS):(NTFS:152625 MB 41% free) ;"));
    EXPECT_FALSE(isOfTheMoment("C:(NTFS:1 MB 41% free) ;", "C:(NTFS:1 MB 41% free) ;E:(FAT:2 MB 1% free) ;"));
}

TEST(Unsteady, ADriveThatTheWidthCutsCountsAsFarAsBothTellIt) {
    EXPECT_TRUE(isOfTheMoment("C:(NTFS:1 MB 41% free) ;E:(FAT32:2 MB 10", "C:(NTFS:1 MB 9% free) ;E:(FAT32:2 MB 10%"));
    EXPECT_TRUE(isOfTheMoment("C:(NTFS:1 MB 10% free) ;E:(FA", "C:(NTFS:1 MB 9% free) ;E:(FAT"));
    EXPECT_FALSE(isOfTheMoment("C:(NTFS:1 MB 41% free) ;E:(FAT32:2", "C:(NTFS:1 MB 41% free) ;F:(FAT32:2"));
}

TEST(Unsteady, TheClockIsOfTheMomentAndOtherNumbersAreNot) {
    EXPECT_TRUE(differsByTheMoment({}, {}, findField("dwCurrentMhz")));
    EXPECT_FALSE(differsByTheMoment({}, {}, findField("dwNumberOfProcessors")));
}

// Records before and after: pc1 stays but for what is of the moment, pc2 gets another address, pc3 goes, pc4 comes.
class DiffOfSets : public testing::Test {
  protected:
    DiffOfSets() {
        for (const char* side : {"old", "new"})
            std::filesystem::create_directory(folder / side);
        for (const char* name : {"old/pc1", "old/pc2", "old/pc3", "new/pc4"})
            write(name, sampleBytes());
        RecordBytes moment = sampleBytes();
        put(moment, &STATIONDATA::szFixedDrives, "C(SYSTEM):(NTFS:152625 MB 40% free) ;E:(FAT32:4094 MB 12% free) ");
        put(moment, &STATIONDATA::dwCurrentMhz, {"\x10\x0E", 2});
        write("new/pc1", moment);
        RecordBytes moved = moment;
        put(moved, &STATIONDATA::szIPAddress, "10.0.0.6");
        write("new/pc2", moved);
    }

    void write(const std::string& name, const RecordBytes& bytes) const {
        writeFile(folder / (name + ".bin"), {bytes.data(), bytes.size()});
    }

    const TemporaryFolder folder;
    const std::string old = folder / "old";
    const std::string now = folder / "new";
};

TEST_F(DiffOfSets, TellsWhoCameWhoWentAndWhichFieldsChanged) {
    const ProgramRun told = run({"diff", old, now});
    EXPECT_EQ(told.status, 1);
    EXPECT_EQ(told.errors, "");
    EXPECT_EQ(told.output, "- " + old + "\n+ " + now +
                               "\n\nwent: 1 station\n  pc3\ncame: 1 station\n  pc4\nszIPAddress: 1 station\n  pc2\n"
                               "1 of 2 on both sides differ\n");
}

TEST_F(DiffOfSets, TellsTheValuesInJson) {
    const Json told = Json::parse(run({"diff", old, now, "--json"}).output);
    EXPECT_EQ(told["left"], old);
    EXPECT_EQ(told["went"], Json::parse(R"(["pc3"])"));
    EXPECT_EQ(told["came"], Json::parse(R"(["pc4"])"));
    EXPECT_EQ(told["compared"], 2);
    EXPECT_EQ(told["differing"], 1);
    EXPECT_EQ(told["fields"],
              Json::parse(R"({"szIPAddress": [{"name": "pc2", "left": "10.0.0.5", "right": "10.0.0.6"}]})"));
}

TEST_F(DiffOfSets, HeedsWhatIsOfTheMomentWhereThatIsAskedFor) {
    const Json told = Json::parse(run({"diff", old, now, "--json", "--all"}).output);
    EXPECT_EQ(told["fields"]["szFixedDrives"].size(), 2u);
    EXPECT_EQ(told["fields"]["dwCurrentMhz"],
              Json::parse(R"([{"name": "pc1", "left": 0, "right": 3600}, {"name": "pc2", "left": 0, "right": 3600}])"));
}

TEST_F(DiffOfSets, LeavesOutWhatIsToBeIgnoredInAnyLetterCase) {
    std::filesystem::remove(old + "/pc3.bin");
    std::filesystem::remove(now + "/pc4.bin");
    EXPECT_EQ(run({"diff", old, now, "--ignore", "SZIPADDRESS"}).status, 0);
    const ProgramRun refused = run({"diff", old, now, "--ignore", "szIPAdress"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("close to it: szIPAddress"));
}

TEST_F(DiffOfSets, WritesAPage) {
    const std::string page = folder / "page.html";
    EXPECT_EQ(run({"diff", old, now, "--html", page}).status, 1);
    const std::string html = readFile(page, 1 << 20);
    EXPECT_THAT(html, HasSubstr("<th scope=\"row\">pc2</th><td>10.0.0.5</td><td>10.0.0.6</td>"));
    EXPECT_THAT(html, HasSubstr("<li>pc3</li>"));
    EXPECT_THAT(html, Not(HasSubstr("szFixedDrives")));
    EXPECT_THAT(html, HasSubstr("<p>Before: old<br>After: new</p>"));
}

TEST_F(DiffOfSets, PairsFoldersRowsAndSqliteFiles) {
    const std::string rows = folder / "old.ndjson";
    writeFile(rows, run({"decode", old, "--ndjson"}).output);
    const std::string database = folder / "old.db";
    ASSERT_EQ(run({"decode", old, "--sqlite", database}).status, 0);
    for (const std::string& left : {old, rows, database})
        for (const std::string& right : {rows, database}) {
            const ProgramRun told = run({"diff", left, right, "--all"});
            EXPECT_EQ(told.status, 0) << left << " " << right << told.errors;
            EXPECT_THAT(told.output, HasSubstr("0 of 3 on both sides differ"));
        }
    EXPECT_EQ(Json::parse(run({"diff", rows, now, "--json"}).output)["fields"],
              Json::parse(run({"diff", old, now, "--json"}).output)["fields"]);
}

TEST_F(DiffOfSets, HalfACharacterIsTheSameInEachForm) {
    RecordBytes bytes = sampleBytes();
    put(bytes, &STATIONDATA::szStation, "A\x83");
    write("old/pc1", bytes);
    const std::string rows = folder / "old.ndjson";
    writeFile(rows, run({"decode", old, "--ndjson", "--code-page", "932"}).output);
    const std::string database = folder / "old.db";
    ASSERT_EQ(run({"decode", old, "--sqlite", database, "--code-page", "932"}).status, 0);
    EXPECT_EQ(run({"diff", rows, database}).status, 0);
    EXPECT_EQ(run({"diff", old, database, "--code-page", "932"}).status, 0);
}

TEST_F(DiffOfSets, ABadRowCostsALineAndTheStatus) {
    const std::string rows = folder / "old.ndjson";
    const std::string good = run({"decode", old, "--ndjson"}).output;
    writeFile(rows, good + "{\"name\": 1}\n" + good.substr(0, good.find('\n') + 1) +
                        "{\"name\": \"pc1x\", \"codePage\": 1252, \"fields\": {}}\n");
    std::filesystem::copy(old + "/pc1.bin", old + "/pc1x.bin");
    const ProgramRun told = run({"diff", rows, old});
    EXPECT_EQ(told.status, 2);
    EXPECT_EQ(told.errors, "kvstation: " + rows + ": line 4: this is no row of a station\nkvstation: " + rows +
                               ": line 5: 'pc1' stands in line 1 already\nkvstation: " + rows +
                               ": line 6: szStation is missing: a station record in JSON has every field\n");
    EXPECT_THAT(told.output, HasSubstr("0 of 3 on both sides differ"));
}

TEST_F(DiffOfSets, ADeepOrLongRowEndsTheReading) {
    const std::string rows = folder / "deep.ndjson";
    const std::string good = run({"decode", old, "--ndjson"}).output;
    writeFile(rows, good + "{\"a\": " + std::string(100000, '[') + "\n");
    EXPECT_THAT(run({"diff", rows, old}).errors, HasSubstr("line 4: this is no row of a station"));
    writeFile(rows, good + std::string(300000, 'x') + "\n");
    const ProgramRun told = run({"diff", rows, old});
    EXPECT_EQ(told.status, 2);
    EXPECT_EQ(told.errors, "kvstation: " + rows + ": line 4 is longer than 256 KiB\n");
}

TEST_F(DiffOfSets, WhatIsNoRecordHasNeitherComeNorGone) {
    writeFile(now + "/notes.txt", "no record");
    const ProgramRun told = run({"diff", old, now});
    EXPECT_EQ(told.status, 2);
    EXPECT_THAT(told.errors, HasSubstr(now + "/notes.txt is no station record"));
    EXPECT_THAT(told.output, HasSubstr("came: 1 station\n  pc4\n"));
}

TEST_F(DiffOfSets, AColumnThatIsMissingIsNoText) {
    const std::string file = folder / "old.db";
    ASSERT_EQ(run({"decode", old, "--sqlite", file}).status, 0);
    Database(file, Database::Access::Write).run("ALTER TABLE stations DROP COLUMN szMonitor");
    const ProgramRun told = run({"diff", old, file});
    EXPECT_EQ(told.status, 2);
    EXPECT_EQ(told.errors, "kvstation: " + file + ": no such column: stations.szMonitor (SQLite error 1)\n");
}

TEST_F(DiffOfSets, ACellOfNothingIsNoText) {
    const std::string file = folder / "old.db";
    ASSERT_EQ(run({"decode", old, "--sqlite", file}).status, 0);
    Database(file, Database::Access::Write).run("UPDATE stations SET szMonitor = NULL WHERE name = 'pc1'");
    EXPECT_EQ(run({"diff", old, file}).errors, "kvstation: " + file + ": 'pc1': szMonitor must be a text\n");
}

TEST_F(DiffOfSets, AFileWithoutALineIsASetOfNone) {
    writeFile(folder / "empty.ndjson", "");
    const ProgramRun told = run({"diff", folder / "empty.ndjson", now, "--json"});
    EXPECT_EQ(told.status, 1);
    EXPECT_EQ(Json::parse(told.output)["came"], Json::parse(R"(["pc1", "pc2", "pc4"])"));
}

TEST_F(DiffOfSets, WhatCannotBeReadIsToldForWhatItIs) {
    const ProgramRun told = run({"diff", now, folder / "missing"});
    EXPECT_EQ(told.status, 2);
    EXPECT_THAT(told.errors, HasSubstr("missing cannot be read: No such file or directory"));
    EXPECT_EQ(run({"diff", old, now, "--set", "KVIP=1"}).status, 1);
    writeFile(folder / "a.ndjson", run({"decode", old, "--ndjson"}).output);
    EXPECT_EQ(run({"diff", folder / "a.ndjson", folder / "a.ndjson", "--set", "KVIP=1"}).errors,
              "kvstation: neither is a described station, whose answers could be different\n");
}

TEST_F(DiffOfSets, OneRecordIsNoSet) {
    const ProgramRun refused = run({"diff", old, now + "/pc1.bin"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.errors, "kvstation: " + now + "/pc1.bin is one record, and the other is a set of them\n");
    EXPECT_EQ(run({"diff", old}).errors, "kvstation: diff compares two, A and B; 'kvstation diff --help' tells more\n");
}

TEST_F(DiffOfSets, LibrariesNeedWindows) {
    const ProgramRun refused = run({"diff", "--library", "old.dll", "new.dll", KV_STATIONS "/windows-xp-console"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.errors,
              "kvstation: old.dll: a library is loaded on Windows alone; here the module is a part of the tool\n");
}

TEST_F(DiffOfSets, TwoRecordsTellWhichSideIsWhich) {
    const ProgramRun told = run({"diff", old + "/pc2.bin", now + "/pc2.bin", "--ignore", "szFixedDrives"});
    EXPECT_EQ(told.status, 1);
    EXPECT_EQ(told.output, "- " + old + "/pc2.bin\n+ " + now +
                               "/pc2.bin\n\nszIPAddress\n  - \"10.0.0.5\"\n  + \"10.0.0.6\"\ndwCurrentMhz\n  - 0\n  + "
                               "3600\n");
}

}  // namespace
}  // namespace kvstation
