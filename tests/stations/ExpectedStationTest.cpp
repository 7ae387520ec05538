// What a file of expected values means, and which is refused.
#include "tests/stations/ExpectedStation.h"

#include <gmock/gmock.h>

#include <fstream>
#include <stdexcept>

#include "include/kvcstat.h"
#include "tests/kvstation/TemporaryFolder.h"

namespace kvtest {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class ExpectedStationTest : public ::testing::Test {
  protected:
    // A station of which only the record is expected to hold something.
    ExpectedStation Read(const std::string& record) const {
        std::ofstream(folder / "station.json") << "{}";
        std::ofstream(folder / "expected.json")
            << R"({"record": )" << record << R"(, "environment": {}, "trace": [], "stdout": ""})";
        return readExpectedStation(folder / "");
    }

    kvstation::TemporaryFolder folder;
};

TEST_F(ExpectedStationTest, FieldsThatAreLeftOutAreEmptyTextsAndZeros) {
    const ExpectedStation station = Read(R"({"szStation": "PC-LAB3", "dwSessionId": 2})");
    EXPECT_THAT(filledFields(station), ElementsAre("szStation", "dwSessionId"));
    Fields fields = fieldsOf(std::string(KVCSTAT_RECORD_SIZE, '\0'));
    for (auto& [name, value] : fields) {
        if (name == "szStation")
            value = "PC-LAB3";
        if (name == "dwSessionId")
            value = std::int64_t{2};
    }
    EXPECT_EQ(station.record, fields);
}

TEST_F(ExpectedStationTest, AFieldThatIsLeftOutAndHoldsSomethingIsADifference) {
    const CollectedStation found = {recordBytes(Read(R"({"bOutlook": 1, "szOS": "Windows 98"})").record), {}, {}, ""};
    EXPECT_THAT(differences(Read(R"({"bOutlook": 1})"), found),
                ElementsAre(R"(szOS: expected "", found "Windows 98")", StartsWith("record: the bytes differ")));
    EXPECT_THAT(differences(Read(R"({"szOS": "Windows 98"})"), found),
                ElementsAre("bOutlook: expected 0, found 1", StartsWith("record: the bytes differ")));
}

TEST_F(ExpectedStationTest, ANameThatIsNoFieldOrStandsBehindALaterOneIsRefused) {
    for (const char* record :
         {R"({"szNothing": "x"})", R"({"szOS": "x", "szNothing": "x"})", R"({"szWinUser": "x", "szOS": "Windows 98"})"})
        EXPECT_THAT([&] { Read(record); }, ::testing::ThrowsMessage<std::runtime_error>(HasSubstr("out of the order")))
            << record;
}

}  // namespace
}  // namespace kvtest
