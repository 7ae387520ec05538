#include "kvstation/CallTimes.h"

#include <gmock/gmock.h>

namespace kvtest {
namespace {

using kvstation::StepCall;
using std::chrono::microseconds;

StepCall call(std::string_view step, const std::string& name, microseconds duration) {
    return {step, {.name = name, .arguments = "1", .answer = {}, .subject = {}}, duration};
}

TEST(Times, TellEachStepAndTheSlowestCallsFirst) {
    EXPECT_EQ(kvstation::timesText({call("memory", "GlobalMemoryStatus", microseconds(20)),
                                    call("drives", "GetDriveTypeA", microseconds(1500)),
                                    call("drives", "GetVolumeInformationA", microseconds(2250))}),
              "Time in platform calls\n"
              "     0.020 ms  memory (1 call)\n"
              "     3.750 ms  drives (2 calls)\n"
              "\n"
              "Slowest calls\n"
              "     2.250 ms  GetVolumeInformationA(1), drives\n"
              "     1.500 ms  GetDriveTypeA(1), drives\n"
              "     0.020 ms  GlobalMemoryStatus(1), memory\n");
}

TEST(Times, CutLongArgumentsBetweenCharacters) {
    StepCall longCall = call("drives", "GetDriveTypeA", microseconds(1));
    std::string whole;
    for (int i = 0; i < 80; ++i)
        whole += "\xC3\xBC";
    longCall.call.arguments = whole + whole;
    EXPECT_THAT(kvstation::timesText({longCall}), testing::HasSubstr("GetDriveTypeA(" + whole + "...), drives"));
}

TEST(Times, NameFiveCallsAtMost) {
    std::vector<StepCall> calls(9, call("drives", "GetDriveTypeA", microseconds(1)));
    const std::string text = kvstation::timesText(calls);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 1 + 1 + 1 + 5);
}

}  // namespace
}  // namespace kvtest
