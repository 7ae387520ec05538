// The rules themselves: what a field may not hold, however near to it that stands.
#include "tests/faults/FieldRules.h"

#include <gmock/gmock.h>

#include "simwin/station/StationReader.h"

namespace kvtest {
namespace {

using ::testing::IsEmpty;
using ::testing::Not;

// A described station whose record differs from the right one in some fields.
class FieldRulesTest : public ::testing::Test {
  protected:
    struct Content {
        std::string field;
        std::string text;
    };

    static std::vector<std::string> Unexplained(const std::string& stationName, const std::vector<Content>& contents) {
        const std::filesystem::path folder = std::filesystem::path(KV_STATIONS) / stationName;
        const simwin::Station station = simwin::readStation(folder);
        const Fields expected = readExpectedStation(folder).record;
        Fields found = expected;
        for (auto& [name, value] : found) {
            for (const Content& content : contents) {
                if (content.field == name)
                    value = content.text;
            }
        }
        return explain(StationTexts(station), expected, found).unexplainedFields;
    }
};

TEST_F(FieldRulesTest, TheNameOfAValueIsNoneOfItsTexts) {
    EXPECT_THAT(Unexplained("windows-xp-console", {{"szBiosVersion", "SystemBiosVersion"}}), Not(IsEmpty()));
    EXPECT_THAT(Unexplained("windows-xp-console", {{"szMonitor", "DeviceDesc"}}), Not(IsEmpty()));
    EXPECT_THAT(Unexplained("windows-98-workstation", {{"szSystemIdentifier", "MachineType"}}), Not(IsEmpty()));
}

TEST_F(FieldRulesTest, TheValueBesideItIsNoneOfItsTexts) {
    EXPECT_THAT(Unexplained("windows-xp-console", {{"szBiosVersion", "03/14/07"}}), Not(IsEmpty()));
    EXPECT_THAT(Unexplained("windows-xp-console", {{"szDefaultGateway", "255.255.248.0"}}), Not(IsEmpty()));
    EXPECT_THAT(Unexplained("metaframe-session", {{"szTSClientName", "CTX-HANSE3"}}), Not(IsEmpty()));
}

TEST_F(FieldRulesTest, AnItemIsListedInItsPlaceAndOnce) {
    const std::string first = "TAP-Win32 Adapter V9";
    const std::string second = "Realtek PCIe GBE Family Controller";
    const std::string third = "Microsoft Virtual WiFi Miniport Adapter";
    const auto unexplained = [](const std::string& list) {
        return Unexplained("windows-7-workstation", {{"szNetworkAdapters", list}});
    };
    EXPECT_THAT(unexplained(first + ";" + third), IsEmpty());
    EXPECT_THAT(unexplained(first + ";;" + third), IsEmpty());
    EXPECT_THAT(unexplained(first + ";" + first + ";" + third), Not(IsEmpty()));
    EXPECT_THAT(unexplained(second + ";" + first), Not(IsEmpty()));
}

TEST_F(FieldRulesTest, ABrowserIsLeftOutWholeOrLosesItsVersionWhereThatIsSaid) {
    const auto unexplained = [](const std::string& list) {
        return Unexplained("windows-7-workstation", {{"szBrowser", list}});
    };
    EXPECT_THAT(unexplained("Internet Explorer 9.0.8112.16421 ;Opera "), IsEmpty());
    EXPECT_THAT(unexplained("Internet Explorer  ;Mozilla Firefox 22.0 (de)"), Not(IsEmpty()));
    EXPECT_THAT(unexplained("Mozilla Firefox "), Not(IsEmpty()));
}

TEST_F(FieldRulesTest, AFixedTextIsTheOneOfTheStationsOwnKind) {
    const std::string station = "windows-11-notebook";
    EXPECT_THAT(Unexplained(station, {{"szProcessorName", "Unknown processor"}}), IsEmpty());
    EXPECT_THAT(Unexplained(station, {{"szProcessorName", "Intel processor"}}), Not(IsEmpty()));
    EXPECT_THAT(Unexplained("nt4-workstation", {{"szKeyboard", "Extended IBM keyboard (101 or 102 keys) "}}),
                IsEmpty());
    EXPECT_THAT(Unexplained("nt4-workstation", {{"szKeyboard", "Japanese keyboard"}}), Not(IsEmpty()));
}

TEST_F(FieldRulesTest, TheThirdSourceNeverShowsWhereTheFirstTwoAreThere) {
    const auto unexplained = [](const std::string& adapter) {
        return Unexplained("windows-2003-terminal-session", {{"szVideoAdapter", adapter}});
    };
    EXPECT_THAT(unexplained("ATI RAGE XL PCI BIOS P/N 113-85101-101//4.330"), IsEmpty());
    EXPECT_THAT(unexplained("ATI RAGE XL PCI"), Not(IsEmpty()));
}

TEST_F(FieldRulesTest, AClientAndItsServerAreNotMixed) {
    const std::string station = "windows-2003-terminal-session";
    EXPECT_THAT(Unexplained(station, {{"szIPAddress", "172.16.4.12"}, {"szMACAddress", "00110A5BC47E"}}),
                Not(IsEmpty()));
    EXPECT_THAT(Unexplained(station, {{"szIPAddress", "172.16.4.12"},
                                      {"szMACAddress", "00110A5BC47E"},
                                      {"szDnsName", "ts-hafen02.seefracht.example"},
                                      {"szServerIPAddress", ""},
                                      {"szServerName", ""},
                                      {"szServerMACAddress", ""}}),
                IsEmpty());
}

TEST_F(FieldRulesTest, AStationIsCalledWhatItsRecordTells) {
    const std::string station = "windows-xp-console";
    EXPECT_THAT(Unexplained(station, {{"szStation", "RITPLATS-05"}}), IsEmpty());
    EXPECT_THAT(Unexplained(station, {{"szStation", "172.20.16.45"}}), Not(IsEmpty()));
    EXPECT_THAT(Unexplained(station, {{"szMACAddress", ""}, {"szStation", "172.20.16.45"}}), IsEmpty());
}

}  // namespace
}  // namespace kvtest
