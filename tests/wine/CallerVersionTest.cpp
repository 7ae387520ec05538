// The version of Windows that a program without a manifest is told, and the option of the tool that collects so. Wine
// reads manifests as Windows does, and is another Windows for each program where its settings say so.
#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <tuple>

#include "framework/Windows.h"
#include "simwin/station/StationReader.h"
#include "tests/kvstation/RunningProgram.h"
#include "tests/wine/StableFields.h"

namespace {

namespace fs = std::filesystem;

using kvstation::ProgramRun;
using kvstation::runProgram;
using testing::StartsWith;

constexpr char kSettings[] = "Software\\Wine\\AppDefaults";

// Which Windows a program runs on, for the object's life.
class WindowsOf {
  public:
    WindowsOf(const fs::path& program, const std::string& windows)
        : m_key(std::string(kSettings) + "\\" + program.filename().string()) {
        HKEY key = nullptr;
        RegCreateKeyA(HKEY_CURRENT_USER, m_key.c_str(), &key);
        RegSetValueExA(key, "Version", 0, REG_SZ, reinterpret_cast<const BYTE*>(windows.c_str()),
                       static_cast<DWORD>(windows.size() + 1));
        RegCloseKey(key);
    }
    WindowsOf(const WindowsOf&) = delete;
    WindowsOf& operator=(const WindowsOf&) = delete;
    ~WindowsOf() {
        RegDeleteKeyA(HKEY_CURRENT_USER, m_key.c_str());
        RegDeleteKeyA(HKEY_CURRENT_USER, kSettings);  // not where other programs have theirs
    }

  private:
    std::string m_key;
};

// Of digits up to the line's end.
std::string bytesOf(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size() && hex[i] != '\r'; i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

class CallerVersion : public testing::Test {
  protected:
    ~CallerVersion() override {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    void runOn(const std::string& version) {
        const WindowsOf tool(KVSTATION_PROGRAM, version);
        const WindowsOf caller(KV_BARE_CALLER, version);
        const ProgramRun called = runProgram({KV_BARE_CALLER});
        ASSERT_EQ(called.status, 0);
        bare = bytesOf(called.output);
        shown = show({});
        shownAsCaller = show({"--as-caller"});
    }

    std::string show(const std::vector<std::string>& options) {
        std::vector<std::string> words = {KVSTATION_PROGRAM, "show", "--raw", "-"};
        words.insert(words.end(), options.begin(), options.end());
        return runProgram(words).output;
    }

    static std::string systemOf(const std::string& record) {
        for (const auto& [name, value] : kvtest::fieldsOf(record))
            if (name == "szOS")
                return std::get<std::string>(value);
        return {};
    }

    // Records as bytes.
    std::string bare;
    std::string shown;
    std::string shownAsCaller;
    const fs::path folder = fs::temp_directory_path() / ("kvcaller-" + std::to_string(GetCurrentProcessId()));
};

TEST_F(CallerVersion, SinceWindows81TheToolCollectsAsSuchACallerWhereItIsAsked) {
    for (const auto& [version, system] :
         {std::pair("win81", "Windows NT 6.3 "), std::pair("win10", "Windows NT 10.0 ")}) {
        SCOPED_TRACE(version);
        runOn(version);
        EXPECT_EQ(systemOf(bare), "Windows NT 6.2 (Build 9200)");
        EXPECT_THAT(systemOf(shown), StartsWith(system));
        EXPECT_EQ(kvtest::StableFields(shownAsCaller), kvtest::StableFields(bare));
    }
}

TEST_F(CallerVersion, BeforeWindows81NothingDiffers) {
    runOn("win8");
    EXPECT_EQ(systemOf(bare), "Windows NT 6.2 (Build 9200)");
    EXPECT_EQ(kvtest::StableFields(shown), kvtest::StableFields(bare));
    EXPECT_EQ(kvtest::StableFields(shownAsCaller), kvtest::StableFields(bare));
}

TEST_F(CallerVersion, IsWrittenDownByACaptureThatIsMadeSo) {
    const WindowsOf tool(KVSTATION_PROGRAM, "win10");
    EXPECT_EQ(runProgram({KVSTATION_PROGRAM, "capture", folder.string(), "--as-caller"}).errors, "");
    const auto written = simwin::readStation(folder).version;
    ASSERT_TRUE(written);
    EXPECT_EQ(std::tuple(written->major, written->minor, written->build), std::tuple(6U, 2U, 9200U));
}

}  // namespace
