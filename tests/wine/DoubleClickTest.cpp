// The tool as a double click starts it: a console of its own and no words. What opens pages here is a copying command.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "framework/Windows.h"
#include "kvstation/platform/Handles.h"
#include "tests/wine/WineTools.h"

namespace {

namespace fs = std::filesystem;

constexpr DWORD kLongest = 60000;  // milliseconds

// Whether pages had a program before, which returns.
std::string programOfPages() {
    char name[256] = {};
    LONG size = sizeof name;
    return RegQueryValueA(HKEY_CLASSES_ROOT, ".html", name, &size) == ERROR_SUCCESS ? name : "";
}

class DoubleClick : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(folder);
        RegSetValueA(HKEY_CLASSES_ROOT, ".html", REG_SZ, "KVSample.Page", 0);
        const std::string command = "cmd.exe /c copy \"%1\" \"" + opened.string() + "\"";
        RegSetValueA(HKEY_CLASSES_ROOT, "KVSample.Page\\shell\\open\\command", REG_SZ, command.c_str(), 0);
    }
    void TearDown() override {
        if (before.empty())
            RegDeleteKeyA(HKEY_CLASSES_ROOT, ".html");
        else
            RegSetValueA(HKEY_CLASSES_ROOT, ".html", REG_SZ, before.c_str(), 0);
        for (const char* key : {"\\shell\\open\\command", "\\shell\\open", "\\shell", ""})
            RegDeleteKeyA(HKEY_CLASSES_ROOT, (std::string("KVSample.Page") + key).c_str());
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    // Gives the exit status. Standard input ends at once, standard error goes to a file.
    DWORD start(const fs::path& tool, DWORD how, const std::string& words = "") {
        const kvtest::ScopedVariable temporary("TMP", folder.string().c_str());
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        const kvstation::OwnedHandle nothing(
            CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, &inherited, OPEN_EXISTING, 0, nullptr));
        const kvstation::OwnedHandle error(CreateFileA(errors.string().c_str(), GENERIC_WRITE,
                                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                                       &inherited, CREATE_ALWAYS, 0, nullptr));
        STARTUPINFOA info{};
        info.cb = sizeof info;
        info.dwFlags = STARTF_USESTDHANDLES;
        info.hStdInput = nothing.get();
        info.hStdOutput = nothing.get();
        info.hStdError = error.get();
        PROCESS_INFORMATION process{};
        std::string line = "kvstation" + words;
        if (!CreateProcessA(tool.string().c_str(), line.data(), nullptr, nullptr, TRUE, how, nullptr, nullptr, &info,
                            &process))
            return GetLastError();
        CloseHandle(process.hThread);
        const kvstation::OwnedHandle running(process.hProcess);
        WaitForSingleObject(running.get(), kLongest);
        DWORD status = 0;
        GetExitCodeProcess(running.get(), &status);
        return status;
    }

    // What opens a page does so in its own time.
    std::string openedPage() const {
        for (DWORD waited = 0; waited < kLongest; waited += 50) {
            const std::string text = content(opened);
            if (text.find("</html>") != std::string::npos)
                return text;
            Sleep(50);
        }
        return {};
    }

    static std::string content(const fs::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const std::string before = programOfPages();
    // Of each test its own: the process of a console lives on for a moment, and holds what its program inherited.
    const fs::path folder = fs::temp_directory_path() / ("kvpage-" + std::to_string(GetCurrentProcessId()) + "-" +
                                                         testing::UnitTest::GetInstance()->current_test_info()->name());
    const fs::path opened = folder / "opened.html";
    const fs::path errors = folder / "errors.txt";
};

TEST_F(DoubleClick, OpensThePageOfThisStation) {
    EXPECT_EQ(start(KVSTATION_PROGRAM, CREATE_NEW_CONSOLE), 0u);
    EXPECT_EQ(content(errors), "");
    const std::string page = openedPage();
    EXPECT_NE(page.find("szMACAddress"), std::string::npos);
    EXPECT_EQ(page, content(folder / "kvstation.html"));
}

TEST_F(DoubleClick, KeepsTheWindowUntilAnErrorIsRead) {
    const fs::path alone = folder / "kvstation.exe";
    fs::copy_file(KVSTATION_PROGRAM, alone);
    EXPECT_EQ(start(alone, CREATE_NEW_CONSOLE), 1u);
    const std::string told = content(errors);
    EXPECT_EQ(told.find("kvstation: kvcstat64.dll is not beside the tool"), 0u) << told;
    EXPECT_NE(told.find("\nPress Enter to close this window."), std::string::npos) << told;
    EXPECT_FALSE(fs::exists(opened));
}

TEST_F(DoubleClick, IsNoneWithWordsOrWithoutAConsole) {
    EXPECT_EQ(start(KVSTATION_PROGRAM, CREATE_NEW_CONSOLE, " bogus"), 2u);
    EXPECT_EQ(start(KVSTATION_PROGRAM, DETACHED_PROCESS), 2u);
    EXPECT_EQ(content(errors).find("kvstation: which verb?"), 0u);
    EXPECT_FALSE(fs::exists(folder / "kvstation.html"));
}

}  // namespace
