// The built program: what it writes where, and its exit status.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "kvstation/platform/Files.h"
#include "kvstation/report/JsonView.h"
#include "tests/kvstation/Samples.h"
#include "tests/kvstation/TemporaryFolder.h"
#include "tests/kvstation/ToolRun.h"
#include "tests/kvstation/Verbs.h"

namespace kvstation {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kConsole = KV_STATIONS "/windows-xp-console";

// One line on standard error, nothing on standard output.
void expectRefusal(const ProgramRun& refused, int status, const std::string& line) {
    EXPECT_EQ(refused.status, status);
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(refused.errors, "kvstation: " + line + "\n");
}

class Program : public testing::Test {
  protected:
    Program() {
        const RecordBytes bytes = sampleBytes();
        writeFile(raw, {bytes.data(), bytes.size()});
        writeFile(json, jsonOf(Record(bytes)));
    }

    TemporaryFolder folder;
    const std::string raw = folder / "record.bin";
    const std::string json = folder / "record.json";
};

TEST_F(Program, HelpHasAnExampleOfEachVerb) {
    const ProgramRun help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    const auto isExample = [](const std::string& line) { return line.starts_with("  kvstation "); };
    EXPECT_EQ(std::ranges::count_if(linesOf(help.output), isExample), std::ssize(allVerbs()));
    for (const std::string& verb : allVerbs()) {
        EXPECT_THAT(help.output, HasSubstr("\n  kvstation " + verb));
        const ProgramRun own = run({verb, "--help"});
        EXPECT_EQ(own.status, 0);
        EXPECT_THAT(own.output, HasSubstr("Example:\n  kvstation " + verb));
    }
}

TEST_F(Program, VersionIsOneLine) {
    const ProgramRun version = run({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, testing::MatchesRegex("kvstation [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Program, WrongUseIsOneLineAndStatus2) {
    expectRefusal(run({}), 2, "which verb? 'kvstation --help' lists them");
    expectRefusal(run({"shwo"}), 2, "'shwo' is no verb; close to it: show; 'kvstation --help' lists the verbs");
    expectRefusal(run({"decode"}), 2, "FILE or --from is required; 'kvstation decode --help' tells more");
    expectRefusal(run({"layout", "--nothing"}), 2,
                  "'--nothing' is no option of layout; 'kvstation layout --help' tells more");
    EXPECT_EQ(run({"decode", raw, "--json", "--field", "szOS"}).status, 2);
    EXPECT_EQ(run({"show", "--timeout", "0"}).status, 2);
    for (const char* row : {"--ndjson", "--csv"})
        expectRefusal(run({"show", "--html", "page.html", row}), 2, "--html writes one record");
    EXPECT_EQ(run({"diff", raw}).status, 2);
}

TEST_F(Program, AnUnknownFieldNamesThoseCloseToIt) {
    const ProgramRun refused = run({"decode", raw, "--field", "szMacAdress"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("'szMacAdress' is no field; close to it: szMACAddress"));
}

TEST_F(Program, ShowNeedsWindows) {
    expectRefusal(run({"show"}), 1,
                  "looking at this computer needs Windows; trace, explain and simulate take a described station here");
}

TEST_F(Program, LookingAtThisComputerNeedsWindows) {
    const std::string line =
        "looking at this computer needs Windows; trace, explain and simulate take a described station here";
    expectRefusal(run({"trace"}), 1, line);
    expectRefusal(run({"explain", "szOS"}), 1, line);
    expectRefusal(run({"capture", folder / "station"}), 1, line);
}

TEST_F(Program, OnlyThisComputerIsSeenAsByACaller) {
    const std::string station = KV_STATIONS "/windows-7-workstation";
    const std::string line = "--as-caller is for this computer; a described station tells everyone the same version";
    expectRefusal(run({"trace", station, "--as-caller"}), 2, line);
    expectRefusal(run({"explain", "szOS", station, "--as-caller"}), 2, line);
    expectRefusal(run({"whatif", station, "--as-caller", "--unset", "CLIENTNAME"}), 2, line);
    expectRefusal(run({"simulate", station, "--as-caller"}), 2,
                  "'--as-caller' is no option of simulate, but of show, trace, explain, whatif, capture; 'kvstation "
                  "simulate --help' tells more");
}

TEST_F(Program, DecodesRawBytesAndJsonAlike) {
    const ProgramRun fromRaw = run({"decode", raw});
    EXPECT_EQ(fromRaw.status, 0);
    EXPECT_THAT(fromRaw.output, HasSubstr("  szStation               PC-LAB3\n"));
    EXPECT_EQ(run({"decode", json}).output, fromRaw.output);
    EXPECT_EQ(run({"decode", raw, "--json"}).output, jsonOf(Record(sampleBytes())));
}

TEST_F(Program, AFieldIsItsValueAlone) {
    EXPECT_EQ(run({"decode", raw, "--field", "szIPAddress"}).output, "10.0.0.5\n");
    EXPECT_EQ(run({"decode", raw, "--field", "dwSessionId"}).output, "4294967294\n");
    EXPECT_EQ(run({"decode", raw, "--field", "szKeyboard"}).output, "\n");
}

TEST_F(Program, WritesPageAndBytesToFilesOnly) {
    const std::string page = folder / "page.html";
    const std::string copy = folder / "copy.bin";
    const ProgramRun written = run({"decode", raw, "--html", page, "--raw", copy});
    EXPECT_EQ(written.status, 0);
    EXPECT_EQ(written.output + written.errors, "");
    EXPECT_THAT(readFile(page, 1 << 20), AllOf(StartsWith("<!DOCTYPE html>"), EndsWith("</html>\n")));
    EXPECT_EQ(readFile(copy, 1 << 20), readFile(raw, 1 << 20));
}

TEST_F(Program, JsonHasNoRawBytesToWrite) {
    const std::string copy = folder / "copy.bin";
    expectRefusal(run({"decode", json, "--raw", copy}), 1,
                  copy + " is not written: a record that was read from JSON has no raw bytes");
}

TEST_F(Program, AFileThatIsNotThereIsOneLine) {
    const std::string missing = folder / "missing\n.bin";
    expectRefusal(run({"decode", missing}), 1,
                  (folder / "missing\\x0a.bin") + " cannot be read: No such file or directory (error 2)");
    expectRefusal(
        run({"decode", raw, "--html", folder / "no/page.html"}), 1,
        (folder / "no/page.html") + " cannot be written: No such file or directory (error 2); make its folder first");
}

TEST_F(Program, AFolderInAFilesPlaceIsOneLine) {
    const std::string place = folder / "place";
    std::filesystem::create_directory(place);
    expectRefusal(run({"decode", place}), 1, place + " holds no file");
    expectRefusal(run({"decode", raw, "--html", place}), 1, place + " cannot be written: Is a directory (error 21)");
}

TEST_F(Program, APageAndBytesAreWrittenBothOrNot) {
    const std::string page = folder / "page.html";
    expectRefusal(run({"decode", json, "--html", page, "--raw", folder / "copy.bin"}), 1,
                  (folder / "copy.bin") + " is not written: a record that was read from JSON has no raw bytes");
    EXPECT_FALSE(std::filesystem::exists(page));
    writeFile(page, "the old page");
    EXPECT_EQ(run({"decode", raw, "--html", page, "--raw", folder / "no/copy.bin"}).status, 1);
    EXPECT_EQ(readFile(page, 1 << 20), "the old page");
}

TEST_F(Program, BehindALinkItIsTheFileThatIsReplaced) {
    const std::string page = folder / "page.html";
    const std::string link = folder / "link.html";
    writeFile(page, "the old page");
    std::filesystem::create_symlink("page.html", link);
    EXPECT_EQ(run({"decode", raw, "--html", link}).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_THAT(readFile(page, 1 << 20), StartsWith("<!DOCTYPE html>"));
    expectRefusal(run({"decode", raw, "--html", page, "--raw", page}), 2,
                  page + " takes one result; name another file for the other");
}

TEST_F(Program, APageOrBytesCanGoToStandardOutput) {
    EXPECT_THAT(run({"decode", raw, "--html", "-"}).output,
                AllOf(StartsWith("<!DOCTYPE html>"), EndsWith("</html>\n")));
    EXPECT_EQ(run({"decode", raw, "--raw", "-"}).output, readFile(raw, 1 << 20));
    expectRefusal(run({"decode", raw, "--raw", "-", "--html", "-"}), 2,
                  "standard output takes one result; name another file for the other");
    expectRefusal(run({"decode", raw, "--html", "-", "--field", "szOS"}), 2,
                  "standard output takes one result; name another file for the other");
}

TEST_F(Program, SeveralFieldsAreALineEachInTheOrderAskedFor) {
    EXPECT_EQ(run({"decode", raw, "--field", "szipaddress", "--field", "SZSTATION"}).output, "10.0.0.5\nPC-LAB3\n");
}

TEST_F(Program, AnEmptyFileNameIsWrongUse) {
    const auto line = [](const std::string& place, const std::string& verb) {
        return place + ": the file name is empty; 'kvstation " + verb + " --help' tells more";
    };
    expectRefusal(run({"decode", raw, "--html", ""}), 2, line("--html", "decode"));
    expectRefusal(run({"decode", raw, "--raw", ""}), 2, line("--raw", "decode"));
    expectRefusal(run({"simulate", kConsole, "--html", ""}), 2, line("--html", "simulate"));
    expectRefusal(run({"decode", ""}), 2, line("FILE", "decode"));
    expectRefusal(run({"simulate", ""}), 2, line("STATION", "simulate"));
    expectRefusal(run({"diff", raw, ""}), 2, line("B", "diff"));
}

TEST_F(Program, AForeignFileIsOneLine) {
    const std::string path = folder / "foreign";
    writeFile(path, std::string(300000, 'x'));
    expectRefusal(run({"decode", path}), 1, path + " is longer than 256 KiB");
    writeFile(path, "hello");
    expectRefusal(run({"decode", path}), 1,
                  path + " is no station record: it is no JSON object and has 5 bytes, where a raw record has " +
                      std::to_string(KVCSTAT_RECORD_SIZE));
    EXPECT_EQ(run({"decode", KV_STATIONS}).status, 1);
}

TEST_F(Program, EqualRecordsDifferInNothing) {
    const ProgramRun equal = run({"diff", raw, json});
    EXPECT_EQ(equal.status, 0);
    EXPECT_EQ(equal.output + equal.errors, "");
}

TEST_F(Program, DifferentRecordsGiveStatus1) {
    const std::string other = folder / "other.bin";
    RecordBytes bytes = sampleBytes();
    put(bytes, &STATIONDATA::szIPAddress, "10.0.0.6");
    writeFile(other, {bytes.data(), bytes.size()});
    const ProgramRun different = run({"diff", json, other});
    EXPECT_EQ(different.status, 1);
    EXPECT_EQ(different.output, "- " + json + "\n+ " + other + "\n\nszIPAddress\n  - \"10.0.0.5\"\n  + \"10.0.0.6\"\n");
    EXPECT_EQ(different.errors, "");
}

TEST_F(Program, ARecordsTextsAreReadInTheCodePageThatIsNamed) {
    const std::string japanese = folder / "japanese.bin";
    RecordBytes bytes = sampleBytes();
    put(bytes, &STATIONDATA::szUserName, "\x83\x5C\x95\x5C");
    writeFile(japanese, {bytes.data(), bytes.size()});
    EXPECT_EQ(run({"decode", japanese, "--code-page", "932", "--field", "szUserName"}).output, "\u30BD\u8868\n");
    EXPECT_EQ(run({"decode", japanese, "--field", "szUserName"}).output, "\u0192\\\u2022\\\n");
    expectRefusal(run({"decode", raw, "--code-page", "1249"}), 2,
                  "--code-page: '1249' is none of the known code pages: 437, 850, 874, 932, 936, 949, 950, 1250, 1251, "
                  "1252, 1253, 1254, 1255, 1256, 1257, 1258, 65001; 'kvstation decode --help' tells more");
    EXPECT_EQ(run({"decode", raw, "--code-page", "932", "--code-page", "1252"}).status, 2);
}

TEST_F(Program, ComparedRecordsCanBeOfTwoCodePages) {
    const std::string polish = folder / "polish.bin";
    const std::string unicode = folder / "unicode.bin";
    RecordBytes bytes = sampleBytes();
    put(bytes, &STATIONDATA::szUserName,
        "\xA3\xF3"
        "d\x9F");
    writeFile(polish, {bytes.data(), bytes.size()});
    bytes = sampleBytes();
    put(bytes, &STATIONDATA::szUserName, "\u0141\u00F3d\u017A");
    writeFile(unicode, {bytes.data(), bytes.size()});
    EXPECT_EQ(run({"diff", polish, unicode, "--code-page", "1250", "--code-page", "65001"}).output, "");
    EXPECT_EQ(run({"diff", polish, polish, "--code-page", "1250"}).status, 0);
    EXPECT_EQ(run({"diff", polish, unicode, "--code-page", "1250"}).status, 1);
    EXPECT_EQ(run({"diff", polish, unicode, "--code-page", "1", "--code-page", "2"}).status, 2);
}

TEST_F(Program, ARecordThatCannotBeReadIsNoDifference) {
    const ProgramRun refused = run({"diff", raw, folder / "missing"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.output, "");
    EXPECT_THAT(refused.errors, HasSubstr("No such file or directory"));
}

TEST_F(Program, SimulatesADescribedStation) {
    const ProgramRun simulated = run({"simulate", kConsole, "--json"});
    EXPECT_EQ(simulated.errors, "");
    ASSERT_EQ(simulated.status, 0);
    const auto record = nlohmann::json::parse(simulated.output);
    auto expected = nlohmann::json::parse(readFile(kConsole + "/expected.json", 1 << 20))["record"];
    for (const Field& field : fields())  // what the file leaves out is empty
        expected.emplace(field.name, field.type == FieldType::Text ? nlohmann::json("") : nlohmann::json(0));
    expected["collected"] = nullptr;  // the station was written by hand
    EXPECT_EQ(record, expected);
}

// A user, a printer that nobody knows to be called after one, and nothing else.
class NamedStation : public Program {
  protected:
    NamedStation() {
        std::filesystem::create_directory(station);
        writeFile(station + "/station.json",
                  R"({"collected": {"at": "2026-11-22T12:00:00Z"}, "user": {"name": "zornhart"}})");
        writeFile(station + "/registry.reg",
                  "REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices]\n"
                  "\"Laser Mustermann (Zornhart)\"=\"winspool,Ne00:\"\n");
    }
    std::string contentOf(const std::string& made) {
        return readFile(made + "/station.json", 1 << 20) + readFile(made + "/registry.reg", 1 << 20);
    }

    const std::string station = folder / "station";
    const std::string out = folder / "out";
};

TEST_F(NamedStation, IsRedactedAndWhatStaysIsListed) {
    const ProgramRun made = run({"redact", station, out});
    EXPECT_EQ(made.status, 0);
    EXPECT_EQ(made.output, out + "\n");
    EXPECT_THAT(contentOf(out), AllOf(HasSubstr("Laser Mustermann"), Not(HasSubstr("ornhart"))));
    EXPECT_THAT(made.errors,
                testing::MatchesRegex(
                    "kvstation: left as they were, since nothing shows that they are somebody's; read them, or have "
                    "all replaced:\n  Laser Mustermann \\([A-Z][a-z]{7}\\)   registry.reg "
                    "\\[HKEY_CURRENT_USER\\\\Software\\\\Microsoft\\\\Windows NT\\\\CurrentVersion\\\\Devices\\]\n"));
    const ProgramRun simulated = run({"simulate", out, "--json"});
    EXPECT_EQ(simulated.status, 0);
    EXPECT_EQ(nlohmann::json::parse(simulated.output)["collected"], nlohmann::json({{"at", "2026-11-22T12:00:00Z"}}));
}

TEST_F(NamedStation, IsRedactedWhole) {
    const ProgramRun made = run({"redact", "--all", station, out});
    EXPECT_EQ(made.status, 0);
    EXPECT_EQ(made.errors, "");
    EXPECT_THAT(contentOf(out), AllOf(HasSubstr("\"Laser "), HasSubstr("\\Devices]"), Not(HasSubstr("Mustermann")),
                                      Not(HasSubstr("ornhart"))));
}

TEST_F(NamedStation, IsNotWrittenOver) {
    const ProgramRun refused = run({"redact", station, station});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors, HasSubstr("registry.reg is there already"));
    EXPECT_THAT(contentOf(station), HasSubstr("zornhart"));
}

TEST_F(Program, TellsTheTimesOfASimulationAsItsOwn) {
    const ProgramRun plain = run({"simulate", kConsole});
    const ProgramRun timed = run({"simulate", kConsole, "--times"});
    EXPECT_EQ(timed.status, 0);
    EXPECT_EQ(timed.errors, "");
    EXPECT_THAT(
        timed.output,
        StartsWith(plain.output + "\nThe simulated Windows answered: the times below are its own, not the described "
                                  "station's.\nTime in the questions that each field hangs on\n"));
    EXPECT_THAT(timed.output, testing::ContainsRegex("[0-9] ms  szUserName \\([0-9]+ calls\\)\n"));
    EXPECT_THAT(timed.output, HasSubstr("\n\nTime in each platform call\n"));
    EXPECT_THAT(timed.output, HasSubstr("\n\nSlowest calls\n"));
    EXPECT_EQ(run({"simulate", kConsole, "--times", "--json"}).status, 2);
    EXPECT_EQ(run({"simulate", kConsole, "--times", "--field", "szOS"}).status, 2);
}

TEST_F(Program, TracesADescribedStation) {
    const ProgramRun traced = run({"trace", kConsole});
    EXPECT_EQ(traced.status, 0);
    EXPECT_EQ(traced.errors, "");
    EXPECT_THAT(traced.output, StartsWith("  | Reading station data.\nKVGetEnv(\"KVUser\", 512) = nothing  -> "));
    EXPECT_THAT(traced.output, Not(HasSubstr("\x1b")));
}

TEST_F(Program, ExplainsAFieldAsTheDocumentShows) {
    const ProgramRun explained = run({"explain", "SZMacAddress", KV_STATIONS "/metaframe-session"});
    EXPECT_EQ(explained.status, 0);
    EXPECT_EQ(explained.errors, "");
    EXPECT_THAT(explained.output, StartsWith("szMACAddress = \"unknown\"\n"));
    EXPECT_THAT(kvstation::readFile(KV_TOOL_DOCUMENT, 1024 * 1024), HasSubstr("\n```\n" + explained.output + "```\n"));
    EXPECT_THAT(run({"explain", "SZMacAddress", kConsole}).output, HasSubstr("\n  gives    00-1a-a0-3f-c7-e2"));
    EXPECT_EQ(run({"explain", "szMacAdress", kConsole}).status, 2);
}

TEST_F(Program, ASimulatedStationEqualsItsRecord) {
    const std::string bytes = folder / "station.bin";
    ASSERT_EQ(run({"simulate", kConsole, "--raw", bytes}).status, 0);
    EXPECT_EQ(run({"diff", kConsole, bytes}).status, 0);
}

TEST_F(Program, AFolderThatDescribesNoStationIsOneLine) {
    const ProgramRun missing = run({"simulate", folder / "nothing"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.output, "");
    EXPECT_EQ(std::ranges::count(missing.errors, '\n'), 1);

    const std::string station = folder / "station";
    ASSERT_EQ(mkdir(station.c_str(), 0700), 0);
    writeFile(station + "/station.json", "{\"nothing\": 1}");
    writeFile(station + "/registry.reg", "REGEDIT4\n");
    const ProgramRun wrong = run({"simulate", station});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_EQ(wrong.output, "");
    EXPECT_THAT(wrong.errors, AllOf(StartsWith("kvstation: "), HasSubstr("station.json"), HasSubstr("nothing")));
}

class FaultyStation : public Program {
  protected:
    FaultyStation() {
        std::filesystem::create_directory(station);
        writeFile(station + "/registry.reg", "REGEDIT4\n");
    }

    // The line begins with the file's name in the station's folder.
    void expectLine(const std::string& line) { expectRefusal(run({"simulate", station}), 1, station + "/" + line); }

    const std::string station = folder / "station";
    const std::string description = station + "/station.json";
};

TEST_F(FaultyStation, AMissingDescriptionSaysSo) {
    expectLine("station.json cannot be read: No such file or directory (error 2)");
}

TEST_F(FaultyStation, ADescriptionThatCannotBeOpenedSaysWhy) {
    std::filesystem::create_symlink(description, description);
    expectLine("station.json cannot be read: Too many levels of symbolic links (error 40)");
}

TEST_F(FaultyStation, AFolderInTheDescriptionsPlaceSaysSo) {
    std::filesystem::create_directory(description);
    expectLine("station.json cannot be read: Is a directory (error 21)");
}

TEST_F(FaultyStation, ADescriptionThatCannotBeReadSaysWhy) {
    std::filesystem::create_symlink("/proc/self/mem", description);  // opens, and holds nothing at its start
    expectLine("station.json cannot be read: Input/output error (error 5)");
}

TEST_F(FaultyStation, APipeOrADeviceIsRefusedByName) {
    ASSERT_EQ(mkfifo(description.c_str(), 0600), 0);
    expectLine("station.json is a pipe; only a file is read here");
    std::filesystem::remove(description);
    writeFile(description, "{}");
    std::filesystem::remove(station + "/registry.reg");
    std::filesystem::create_symlink("/dev/zero", station + "/registry.reg");
    expectLine("registry.reg is a device; only a file is read here");
    expectRefusal(run({"decode", "/dev/zero"}), 1, "/dev/zero is a device; only a file is read here");
}

TEST_F(FaultyStation, ALongFileIsRefusedWithoutBeingRead) {
    writeFile(description, "{}");
    std::filesystem::resize_file(description, std::uintmax_t{1} << 40);
    expectLine("station.json is longer than 16 MiB");
    writeFile(description, "{}");
    std::filesystem::resize_file(station + "/registry.reg", std::uintmax_t{1} << 40);
    expectLine("registry.reg is longer than 64 MiB");
}

TEST_F(FaultyStation, AnErrorIsNoLongerThanSomebodyReads) {
    writeFile(description, "{\"" + std::string(100000, 'x') + "\": 1}");
    const ProgramRun refused = run({"simulate", station});
    EXPECT_EQ(refused.status, 1);
    EXPECT_LT(refused.errors.size(), 5000u);
    EXPECT_THAT(refused.errors, AllOf(StartsWith("kvstation: " + description + ": /xxxx"), EndsWith("x...\n")));
}

TEST_F(Program, AFullDiskIsTold) {
    const ProgramRun full = runProgram({"/bin/sh", "-c", "exec '" KVSTATION_PROGRAM "' layout >/dev/full"});
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.errors, "kvstation: write(standard output) failed: No space left on device (error 28)\n");
}

TEST_F(Program, APlaceThatTakesNothingIsToldAndStays) {
    const std::string full = folder / "full";
    std::filesystem::create_symlink("/dev/full", full);
    expectRefusal(run({"decode", raw, "--html", full}), 1,
                  full + " cannot be written: No space left on device (error 28)");
    EXPECT_TRUE(std::filesystem::is_symlink(full));
}

TEST_F(Program, AFileThatNoOtherCanReplaceStays) {
    const std::string page = folder / "page.html";
    writeFile(page, "the old page");
    // No file may grow beyond a block: the shell's limit stands for a disk that is full.
    const ProgramRun stopped =
        runProgram({"/bin/sh", "-c",
                    "export GCOV_PREFIX=/dev/null; trap '' XFSZ; ulimit -f 1; exec '" KVSTATION_PROGRAM
                    "' decode \"$0\" --html \"$1\"",
                    raw, page});
    EXPECT_EQ(stopped.status, 1);
    // A build that counts its lines must not cut its counts short, and says at its end that it could not write them.
    EXPECT_THAT(stopped.errors, StartsWith("kvstation: " + page + " cannot be written: File too large (error 27)\n"));
    EXPECT_EQ(readFile(page, 100), "the old page");
    EXPECT_FALSE(std::filesystem::exists(page + ".part"));
}

TEST_F(Program, ATerminalGetsColoursAndItsWidth) {
    const ProgramRun shown = runOnTerminal(commandLine({"decode", raw}), 60, {"TERM=xterm"});
    EXPECT_EQ(shown.status, 0);
    EXPECT_THAT(shown.output, HasSubstr("\x1b[1mStation\x1b[0m\r\n"));
    EXPECT_THAT(shown.output, HasSubstr("(NTFS:152625 MB 41% \r\n"));
}

TEST_F(Program, NoColoursWhenTheyAreNotWanted) {
    for (const char* wish : {"NO_COLOR=1", "TERM=dumb"}) {
        const ProgramRun shown = runOnTerminal(commandLine({"decode", raw}), 60, {"TERM=xterm", wish});
        EXPECT_THAT(shown.output, AllOf(HasSubstr("Station\r\n"), Not(HasSubstr("\x1b")))) << wish;
    }
}

TEST_F(Program, AFieldCannotSteerATerminal) {
    RecordBytes bytes = sampleBytes();
    put(bytes, &STATIONDATA::szStation, "PC\x1b[2JX");
    writeFile(raw, {bytes.data(), bytes.size()});
    EXPECT_EQ(runOnTerminal(commandLine({"decode", raw, "--field", "szStation"}), 80, {"TERM=xterm"}).output,
              "PC\\x1b[2JX\r\n");
    EXPECT_EQ(run({"decode", raw, "--field", "szStation"}).output, "PC\x1b[2JX\n");
}

}  // namespace
}  // namespace kvstation
