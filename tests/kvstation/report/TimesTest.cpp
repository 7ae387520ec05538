#include "kvstation/report/CallTimes.h"

#include <gmock/gmock.h>

namespace kvtest {
namespace {

using kvstation::TimedCall;
using std::chrono::microseconds;

TimedCall call(const std::string& name, microseconds duration) {
    return {{.name = name, .arguments = "1", .answer = {}, .subject = {}}, duration};
}

TEST(Times, TellEachFieldEachCallAndTheSlowestCallsFirst) {
    EXPECT_EQ(
        kvstation::timesText({call("GlobalMemoryStatus", microseconds(20)), call("GetDriveTypeA", microseconds(1500)),
                              call("GetDriveTypeA", microseconds(2250))},
                             {{"dwMemory"}, {"szFixedDrives", "szCDRomDrives"}, {"szFixedDrives"}}),
        "Time in the questions that each field hangs on\n"
        "     3.750 ms  szFixedDrives (2 calls)\n"
        "     1.500 ms  szCDRomDrives (1 call)\n"
        "     0.020 ms  dwMemory (1 call)\n"
        "\n"
        "Time in each platform call\n"
        "     3.750 ms  GetDriveTypeA (2 calls)\n"
        "     0.020 ms  GlobalMemoryStatus (1 call)\n"
        "\n"
        "Slowest calls\n"
        "     2.250 ms  GetDriveTypeA(1)\n"
        "     1.500 ms  GetDriveTypeA(1)\n"
        "     0.020 ms  GlobalMemoryStatus(1)\n");
}

TEST(Times, CutLongArgumentsBetweenCharacters) {
    TimedCall longCall = call("GetDriveTypeA", microseconds(1));
    std::string whole;
    for (int i = 0; i < 80; ++i)
        whole += "\xC3\xBC";
    longCall.call.arguments = whole + whole;
    EXPECT_THAT(kvstation::timesText({longCall}, {{}}), testing::HasSubstr("GetDriveTypeA(" + whole + "...)\n"));
}

TEST(Times, NameFiveSlowCallsAtMost) {
    const std::vector<TimedCall> calls(9, call("GetDriveTypeA", microseconds(1)));
    const std::string text = kvstation::timesText(calls, std::vector<std::vector<std::string>>(9));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 1 + 2 + 1 + 1 + 5);
}

}  // namespace
}  // namespace kvtest
