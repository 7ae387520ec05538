// What the tool says of command lines that ask for what there is not, and what it takes all the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "kvstation/Tool.h"
#include "kvstation/record/FieldTable.h"

namespace kvstation {
namespace {

const std::string kStation = KV_STATIONS "/windows-xp-console";

struct RunHere {
    int status;
    std::string output;
    std::string errors;
};

RunHere runHere(const std::vector<std::string>& arguments) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = runTool(arguments);
    std::fflush(stdout);
    return {status, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

void expectWrongUse(const std::vector<std::string>& arguments, const std::string& line) {
    const RunHere refused = runHere(arguments);
    EXPECT_EQ(refused.status, 2) << line;
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(refused.errors, "kvstation: " + line + "\n");
}

TEST(CommandLine, AWrongOptionIsNamedWithThoseCloseToItAndNoOtherWordIs) {
    const std::string field =
        "'--fieldd' is no option of simulate; close to it: --field; 'kvstation simulate --help' tells more";
    expectWrongUse({"simulate", kStation, "--fieldd", "szOS"}, field);
    expectWrongUse({"simulate", "--fieldd", "szOS", kStation}, field);
    expectWrongUse({"simulate", "--fieldd=szOS", kStation}, field);
    expectWrongUse({"simulate", kStation, "--json", "--fieldd", "szOS", "--bogus"}, field);
    expectWrongUse({"explain", "szOS", kStation, "--bogus"},
                   "'--bogus' is no option of explain; 'kvstation explain --help' tells more");
    expectWrongUse({"import", "hives", "out", "--usr", "x"},
                   "'--usr' is no option of import; close to it: --user; 'kvstation import --help' tells more");
    expectWrongUse({"--versoin"},
                   "'--versoin' is no option of kvstation; close to it: --version; "
                   "'kvstation --help' tells more");
}

TEST(CommandLine, DashesAndLettersOfAnOptionAreTold) {
    const auto line = [](const std::string& typed) {
        return "'" + typed + "' is no option of layout; close to it: --json; 'kvstation layout --help' tells more";
    };
    for (const char* typed : {"-json", "--JSON", "---json", "-j"})
        expectWrongUse({"layout", typed}, line(typed));
    for (const char* typed : {"---", "-%", "--="})
        EXPECT_EQ(runHere({"layout", typed}).status, 2) << typed;
}

TEST(CommandLine, AnOptionOfOtherVerbsIsToldAsTheirs) {
    expectWrongUse({"decode", "record.bin", "--times"},
                   "'--times' is no option of decode, but of show, simulate; 'kvstation decode --help' tells more");
    expectWrongUse({"--times", "show"},
                   "'--times' is no option of kvstation, but of show, simulate; 'kvstation --help' tells more");
}

TEST(CommandLine, AnOptionIsNoOthersValue) {
    expectWrongUse({"simulate", "--html", "--json", kStation},
                   "--html needs a value, and '--json' is an option; 'kvstation simulate --help' tells more");
    expectWrongUse({"simulate", kStation, "--html"},
                   "--html: 1 required FILE missing; 'kvstation simulate --help' tells more");
}

TEST(CommandLine, AValueMayLookLikeAnOptionThatThereIsNot) {
    const RunHere taken =
        runHere({"simulate", kStation, "--field", "szUserName", "--set", "-KVUser=JDOE", "--unset", "-x"});
    EXPECT_EQ(taken.errors, "");
    EXPECT_EQ(taken.status, 0);
}

TEST(CommandLine, BehindTwoDashesNothingIsAnOption) {
    EXPECT_EQ(runHere({"simulate", "--", "--station"}).errors,
              "kvstation: --station is no folder; a station is a folder with registry.reg and station.json\n");
}

TEST(CommandLine, VerbsAndFieldsAreTakenInAnyLetterCase) {
    const RunHere shown = runHere({"SIMULATE", kStation, "--field", "szUserName"});
    EXPECT_EQ(shown.status, 0) << shown.errors;
    EXPECT_EQ(shown.output, runHere({"simulate", kStation, "--field", "szUserName"}).output);
    EXPECT_EQ(fields()[requireTypedField("SZUSERNAME")].name, "szUserName");
    expectWrongUse({"trace", kStation, "--field", "SZOSS"},
                   "the record has no field 'SZOSS'; close to it: szOS; 'kvstation layout' lists them");
    expectWrongUse({"explain", "SZOSS", kStation},
                   "the record has no field 'SZOSS'; close to it: szOS; 'kvstation layout' lists them");
}

TEST(CommandLine, BehindAVerbTheNameOfAnotherIsAFolders) {
    EXPECT_EQ(runHere({"simulate", "show"}).errors,
              "kvstation: show is no folder; a station is a folder with registry.reg and station.json\n");
}

TEST(CommandLine, HelpIsAVerbToo) {
    EXPECT_EQ(runHere({"help"}).output, runHere({"--help"}).output);
    EXPECT_EQ(runHere({"help", "Explain"}).output, runHere({"explain", "--help"}).output);
    EXPECT_EQ(runHere({"help", "help"}).output, runHere({"help", "--help"}).output);
    EXPECT_EQ(runHere({"help", "help"}).status, 0);
    expectWrongUse({"help", "simulat"},
                   "'simulat' is no verb; close to it: simulate; 'kvstation --help' lists the verbs");
}

TEST(CommandLine, TheVersionIsAShortOptionToo) {
    EXPECT_EQ(runHere({"-V"}).output, runHere({"--version"}).output);
    EXPECT_EQ(runHere({"-V"}).status, 0);
}

}  // namespace
}  // namespace kvstation
