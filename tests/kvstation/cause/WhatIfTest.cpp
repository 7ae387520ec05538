#include "kvstation/cause/WhatIf.h"

#include <gmock/gmock.h>

#include "kvstation/platform/Errors.h"
#include "simwin/text/CodePage.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::WhatIf;
using simwin::Station;

constexpr const char* kKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvel\\Test";

const std::string* variable(const Station& station, const std::string& name) {
    for (const simwin::Variable& one : station.environment)
        if (simwin::equalNoCase(one.name, name))
            return &one.value;
    return nullptr;
}

const simwin::RegistryValue* value(const Station& station, const std::string& name) {
    const auto key = station.registry.find(kKey);
    return key ? station.registry.findValue(*key, name) : nullptr;
}

using Texts = std::vector<std::string>;

WhatIf made(Texts WhatIf::*member, Texts texts) {
    WhatIf whatIf;
    whatIf.*member = std::move(texts);
    return whatIf;
}
WhatIf version(const std::string& text) {
    WhatIf whatIf;
    whatIf.version = text;
    return whatIf;
}

Station with(const WhatIf& whatIf) {
    Station station = stationNamed("metaframe-session");
    kvstation::apply(whatIf, station);
    return station;
}

TEST(WhatIf, SetsAndUnsetsVariablesInAnyLetterCase) {
    WhatIf whatIf = made(&WhatIf::set, {"kvstationtype=1", "New=B\xC3\xBCro=2", "Empty="});
    whatIf.unset = {"clientname"};
    const Station station = with(whatIf);
    EXPECT_EQ(*variable(station, "KVStationType"), "1");
    EXPECT_EQ(*variable(station, "New"), "B\xFCro=2");
    EXPECT_EQ(*variable(station, "Empty"), "");
    EXPECT_EQ(variable(station, "CLIENTNAME"), nullptr);
}

TEST(WhatIf, SetsValuesOfEachType) {
    const std::string key = "HKLM\\SOFTWARE\\Quorvel\\Test\\";
    const Station station =
        with(made(&WhatIf::value, {key + "Text=a text", key + "Number=dword:0x1F", key + "Bytes=hex:0A 0b",
                                   key + "Path=expand:%SystemRoot%", key + "List=multi:one|two",
                                   key + "Plain=text:dword:1", key + "@=the default"}));
    EXPECT_EQ(value(station, "Text")->bytes, std::string("a text\0", 7));
    EXPECT_EQ(value(station, "Number")->bytes, std::string("\x1F\0\0\0", 4));
    EXPECT_EQ(value(station, "Number")->type, 4u);
    EXPECT_EQ(value(station, "Bytes")->bytes, "\x0A\x0B");
    EXPECT_EQ(value(station, "Path")->type, 2u);
    EXPECT_EQ(value(station, "List")->bytes, std::string("one\0two\0\0", 9));
    EXPECT_EQ(value(station, "Plain")->bytes, std::string("dword:1\0", 8));
    EXPECT_EQ(value(station, "")->bytes, std::string("the default\0", 12));
}

TEST(WhatIf, MakesACallFailWithTheErrorThatItHas) {
    const Station station = with(made(&WhatIf::fail, {"sendarp", "NetWkstaGetInfo"}));
    EXPECT_NE(station.fails.at("SendARP"), 0u);
    EXPECT_NE(station.fails.at("NetWkstaGetInfo"), 0u);
}

TEST(WhatIf, IsAnotherVersion) {
    EXPECT_EQ(with(version("4.10.2222")).version->platformId, 1u);
    const Station station = with(version("5.1.2600"));
    EXPECT_EQ(station.version->platformId, 2u);
    EXPECT_EQ(station.version->minor, 1u);
    EXPECT_TRUE(station.version->terminalServices);
}

struct BadInput {
    WhatIf whatIf;
    const char* told;
};

TEST(WhatIf, TellsBadInputInOneLineAndChangesNothing) {
    const BadInput inputs[] = {
        {made(&WhatIf::set, {"NoEquals"}), "--set 'NoEquals': expected"},
        {made(&WhatIf::set, {"=value"}), "--set '=value': expected"},
        {made(&WhatIf::set, {"A=\xE2\x98\x83"}), "--set"},
        {made(&WhatIf::unset, {""}), "--unset '': expected"},
        {made(&WhatIf::unset, {"A=1"}), "--unset 'A=1': expected"},
        {made(&WhatIf::value, {"HKLM\\Key\\Name"}), "expected HIVE\\KEY\\NAME=TEXT"},
        {made(&WhatIf::value, {"Name=text"}), "expected HIVE\\KEY\\NAME=TEXT"},
        {made(&WhatIf::value, {"HKXX\\Key\\Name=text"}), "expected HIVE\\KEY\\NAME=TEXT"},
        {made(&WhatIf::value, {"HKLM\\A\\\\B\\Name=text"}), "expected HIVE\\KEY\\NAME=TEXT"},
        {made(&WhatIf::value, {"HKLM\\Key\\Name=dword:4294967296"}), "dword: takes a whole number"},
        {made(&WhatIf::value, {"HKLM\\Key\\Name=dword:"}), "dword: takes a whole number"},
        {made(&WhatIf::value, {"HKLM\\Key\\Name=hex:0A0"}), "hex: takes bytes"},
        {made(&WhatIf::value, {"HKLM\\Key\\Name=hex:zz"}), "hex: takes bytes"},
        {made(&WhatIf::fail, {"SndARP"}), "close to it: SendARP"},
        {made(&WhatIf::fail, {"RegCloseKey"}), "--fail 'RegCloseKey': expected a call"},
        {version("5"), "expected major, minor and build"},
        {version("5.1.2600.1"), "expected major, minor and build"},
        {version("5.1."), "expected major, minor and build"},
        {version("5.1.99999999999"), "expected major, minor and build"},
    };
    for (BadInput input : inputs) {
        Station station = stationNamed("metaframe-session");
        const std::string before = filesOf(station);
        if (input.whatIf.set.empty())
            input.whatIf.set = {"Good=1"};
        try {
            kvstation::apply(input.whatIf, station);
            ADD_FAILURE() << "took " << input.told;
        } catch (const kvstation::WrongUse& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(input.told));
            EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("\n")));
        }
        EXPECT_EQ(filesOf(station), before) << input.told;
    }
}

}  // namespace
}  // namespace kvtest
