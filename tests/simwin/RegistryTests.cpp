#include <gmock/gmock.h>

#include "framework/Windows.h"
#include "simwin/Machine.h"

namespace {

using namespace simwin;

Station stationWithSettings() {
    Station station;
    station.registry.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Product", textValue("Name", "abc"));
    return station;
}

TEST(RegQueryValueExA, AnswersMoreDataAndTheNeededSizeWhenTheBufferIsTooSmall) {
    Machine machine(stationWithSettings());
    const Machine::Scope scope(machine);
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Product", &key), ERROR_SUCCESS);
    BYTE buffer[3] = {'x', 'x', 'x'};
    DWORD size = sizeof buffer;
    DWORD type = 0;
    EXPECT_EQ(RegQueryValueExA(key, "Name", nullptr, &type, buffer, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(buffer[0], 'x');
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_THAT(machine.openHandles(), testing::IsEmpty());
}

}  // namespace
