// The module as two compilers build it gives one record.
#include <filesystem>
#include <string>

#include "tests/wine/StationModule.h"

namespace {

using kvtest::GuardedRecord;
using kvtest::ReleaseFolder;
using kvtest::StationModule;

// The second build's folder; ./kv test makes it, a bare CMake build does not.
constexpr char kSecondFolder[] = KV_SECOND_FOLDER;

std::string collect(const StationModule& module, GuardedRecord& record) {
    record.Fill('\0');
    module.Collect(record.data());
    return {record.data(), KVCSTAT_RECORD_SIZE};
}

TEST(SecondCompilerTest, GivesTheSameRecordOfThisStation) {
    if (!std::filesystem::exists(std::string(kSecondFolder) + "kvcstat64.dll"))
        GTEST_SKIP() << kSecondFolder << "kvcstat64.dll is not built";
    const StationModule first{ReleaseFolder()};
    const StationModule second{kSecondFolder};
    ASSERT_TRUE(first.IsLoaded()) << "error " << GetLastError();
    ASSERT_TRUE(second.IsLoaded()) << "error " << GetLastError();
    ASSERT_NE(first.Library(), second.Library());

    GuardedRecord record;
    collect(first, record);  // sets variables that the calls after it read
    const std::string expected = collect(first, record);
    EXPECT_NE(expected, std::string(KVCSTAT_RECORD_SIZE, '\0'));
    EXPECT_TRUE(expected == collect(second, record));
}

}  // namespace
