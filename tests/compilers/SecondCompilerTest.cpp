// The libraries as two compilers build them give one record.
#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/wine/NetworkAdapters.h"
#include "tests/wine/StableFields.h"
#include "tests/wine/StationModule.h"

namespace {

using kvtest::GuardedRecord;
using kvtest::ReleaseFolder;
using kvtest::StableFields;
using kvtest::StationModule;
using testing::StartsWith;

// As Windows writes it, with a backslash at its end.
std::string secondFolder() {
    return std::filesystem::path(KV_SECOND_FOLDER "/").make_preferred().string();
}

std::string collect(const StationModule& module) {
    GuardedRecord record;
    record.Fill('\0');
    module.Collect(record.data());
    return {record.data(), KVCSTAT_RECORD_SIZE};
}

std::string pathOf(const char* loadedLibrary) {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(GetModuleHandleA(loadedLibrary), path, sizeof path);
    return path;
}

// The second call's, because the first sets variables that each later one reads.
std::vector<std::string> fieldsOfSecondCall(const std::string& folder) {
    const StationModule module{folder};
    if (!module.IsLoaded()) {
        ADD_FAILURE() << folder << ": error " << GetLastError();
        return {};
    }
    for (const char* library : {"kvcstat64.dll", "kvenv64.dll", "kvnetapi64.dll", "KVTSWRP64.dll", "ZRtrc64.dll"})
        EXPECT_THAT(pathOf(library), StartsWith(folder));
    collect(module);
    return StableFields(collect(module));
}

TEST(SecondCompilerTest, GivesTheSameRecordOfThisStation) {
    // ./kv test builds it, a bare CMake build does not.
    if (!std::filesystem::exists(secondFolder() + "kvcstat64.dll"))
        GTEST_SKIP() << secondFolder() << "kvcstat64.dll is not built";
    kvtest::AwaitNetworkAdapters();
    const std::vector<std::string> expected = fieldsOfSecondCall(ReleaseFolder());
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(fieldsOfSecondCall(secondFolder()), expected);
}

}  // namespace
