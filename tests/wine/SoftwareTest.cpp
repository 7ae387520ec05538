// Installed client software: sample programs with version resources of their own stand in for the real ones.
#include <gtest/gtest.h>

#include <string>

#include "framework/Windows.h"
#include "tests/wine/StationModule.h"
#include "tests/wine/WineTools.h"

namespace {

constexpr char kSoftware[] =
    "REGEDIT4\n\n"
    "[HKEY_CLASSES_ROOT\\.ica]\n@=\"KVSample.ICA\"\n\n"
    "[HKEY_CLASSES_ROOT\\KVSample.ICA\\shell\\open\\command]\n"
    "@=\"\\\"C:\\\\KVSAMPLE\\\\Sample Client\\\\WFICA32.EXE\\\" \\\"%1\\\"\"\n\n"
    "[HKEY_CURRENT_USER\\Software\\Opera Software]\n\"Last Directory3\"=\"C:\\\\kvsample\\\\Opera\"\n\n"
    "[HKEY_LOCAL_MACHINE\\Software\\Mozilla\\Mozilla Firefox]\n\"CurrentVersion\"=\"3.6.13 (en-US)\"\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Clients\\Mail\\Microsoft Outlook]\n@=\"Microsoft Outlook\"\n";

constexpr char kNoSoftware[] =
    "REGEDIT4\n\n"
    "[-HKEY_CLASSES_ROOT\\.ica]\n\n[-HKEY_CLASSES_ROOT\\KVSample.ICA]\n\n"
    "[-HKEY_CURRENT_USER\\Software\\Opera Software]\n\n"
    "[-HKEY_LOCAL_MACHINE\\Software\\Mozilla\\Mozilla Firefox]\n\n"
    "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Clients\\Mail\\Microsoft Outlook]\n";

// The sample program (version 10.200.2650.41) under the names of two clients, and the keys that name them.
class SoftwareTest : public ::testing::Test {
  protected:
    void SetUp() override {
        CreateDirectoryA("C:\\kvsample", nullptr);
        CreateDirectoryA("C:\\kvsample\\Sample Client", nullptr);
        CreateDirectoryA("C:\\kvsample\\Opera", nullptr);
        ASSERT_TRUE(CopyFileA(KV_VERSION_SAMPLE, "C:\\kvsample\\Sample Client\\wfica32.exe", FALSE));
        ASSERT_TRUE(CopyFileA(KV_VERSION_SAMPLE, "C:\\kvsample\\Opera\\opera.exe", FALSE));
        kvtest::importRegistry(kSoftware);
    }
    void TearDown() override {
        kvtest::importRegistry(kNoSoftware);
        DeleteFileA("C:\\kvsample\\Sample Client\\wfica32.exe");
        DeleteFileA("C:\\kvsample\\Opera\\opera.exe");
        RemoveDirectoryA("C:\\kvsample\\Sample Client");
        RemoveDirectoryA("C:\\kvsample\\Opera");
        RemoveDirectoryA("C:\\kvsample");
    }

    void Collect() {
        ASSERT_TRUE(module.IsLoaded()) << "error " << GetLastError();
        record.Fill('\0');
        module.Collect(record.data());
    }

    kvtest::StationModule module{kvtest::ReleaseFolder()};
    kvtest::GuardedRecord record;
};

std::string VersionOf(const std::string& path) {
    DWORD ignored = 0;
    std::string block(GetFileVersionInfoSizeA(path.c_str(), &ignored), '\0');
    void* found = nullptr;
    UINT size = 0;
    if (block.empty() || !GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueA(block.data(), "\\", &found, &size))
        return {};
    const auto* info = static_cast<const VS_FIXEDFILEINFO*>(found);
    const auto part = [](DWORD number) { return std::to_string(number); };
    return part(HIWORD(info->dwFileVersionMS)) + "." + part(LOWORD(info->dwFileVersionMS)) + "." +
           part(HIWORD(info->dwFileVersionLS)) + "." + part(LOWORD(info->dwFileVersionLS));
}

TEST_F(SoftwareTest, VersionsOfTheSampleProgramsReachTheRecord) {
    Collect();
    EXPECT_EQ(record.Text(&STATIONDATA::szICAClient), "10.200.2650.41");
    const std::string browsers = record.Text(&STATIONDATA::szBrowser);
    const std::string others = "Mozilla Firefox 3.6.13 (en-US);Opera 10.200.2650.41";
    ASSERT_GE(browsers.size(), others.size());
    EXPECT_EQ(browsers.substr(browsers.size() - others.size()), others);
    EXPECT_NE(record.Text(&STATIONDATA::szMailClient).find("Microsoft Outlook"), std::string::npos);
    EXPECT_EQ(record.Number(&STATIONDATA::bOutlook), 1u);
}

// A Wine without the control gets the sample program in its place for this test.
TEST_F(SoftwareTest, RdpClientHasTheVersionOfItsControl) {
    char root[MAX_PATH] = {};
    GetEnvironmentVariableA("SystemRoot", root, sizeof root);
    const std::string control = std::string(root) + "\\system32\\mstscax.dll";
    const bool isMissing = GetFileAttributesA(control.c_str()) == INVALID_FILE_ATTRIBUTES;
    if (isMissing) {
        ASSERT_TRUE(CopyFileA(KV_VERSION_SAMPLE, control.c_str(), TRUE));
    }
    Collect();
    const std::string version = VersionOf(control);
    if (isMissing)
        DeleteFileA(control.c_str());
    EXPECT_NE(version, "");
    EXPECT_EQ(record.Text(&STATIONDATA::szRDPClient), version);
}

}  // namespace
