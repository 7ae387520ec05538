// Files, their versions, and drives.
#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/VersionResource.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;
using testing::IsEmpty;
using testing::SizeIs;

Station filesDescribed() {
    Station station;
    station.files = {{"C:\\Program Files\\Client\\Tool.exe", FileVersion{6, 0, 2900, 2180}, {}},
                     {"C:\\plain.txt", {}, {}}};
    station.drives['C'] = {DRIVE_FIXED, "SYSTEM", "NTFS", 0x12345678, 160039235584, 65616084992, 70000000000, {}};
    station.drives['D'] = {DRIVE_CDROM, {}, {}, 0, {}, 0, {}, {}};
    station.drives['E'] = {DRIVE_FIXED, {}, "FAT", 0, {}, 0, {}, Clusters{4, 512, 10, 20}};
    return station;
}

class Files : public testing::Test {
  protected:
    Running running{filesDescribed()};
};

using FindFirstFileATest = Files;
using AccessTest = Files;
using FileVersionTest = Files;
using DriveTest = Files;

TEST_F(FindFirstFileATest, AnswersTheRealNameOfAFileAndOfTheFoldersAboveIt) {
    struct {
        const char* path;
        const char* name;
        DWORD attributes;
    } const cases[] = {{"c:\\program files\\client\\tool.EXE", "Tool.exe", FILE_ATTRIBUTE_ARCHIVE},
                       {"C:\\PROGRAM FILES\\CLIENT", "Client", FILE_ATTRIBUTE_DIRECTORY},
                       {"c:\\program files", "Program Files", FILE_ATTRIBUTE_DIRECTORY}};
    for (const auto& one : cases) {
        WIN32_FIND_DATAA data;
        const HANDLE find = FindFirstFileA(one.path, &data);
        ASSERT_NE(find, INVALID_HANDLE_VALUE) << one.path;
        EXPECT_STREQ(data.cFileName, one.name);
        EXPECT_EQ(data.dwFileAttributes, one.attributes);
        EXPECT_EQ(running.machine.openHandles(HandleKind::Find).front().what, one.path);
        EXPECT_TRUE(FindClose(find));
        EXPECT_FALSE(FindClose(find));
    }
    EXPECT_THAT(running.machine.openHandles(), IsEmpty());
    EXPECT_THAT(running.machine.misuses(), SizeIs(3));
}

TEST_F(FindFirstFileATest, TellsWhetherTheFolderIsThere) {
    struct {
        const char* path;
        DWORD error;
    } const cases[] = {{"C:\\Program Files\\None", ERROR_FILE_NOT_FOUND},
                       {"C:\\None", ERROR_FILE_NOT_FOUND},
                       {"C:\\Program Files\\", ERROR_FILE_NOT_FOUND},
                       {"C:\\", ERROR_FILE_NOT_FOUND},
                       {"C:\\Program", ERROR_FILE_NOT_FOUND},
                       {"C:\\None\\None", ERROR_PATH_NOT_FOUND},
                       {"Z:\\None", ERROR_PATH_NOT_FOUND},
                       {"", ERROR_PATH_NOT_FOUND},
                       {nullptr, ERROR_PATH_NOT_FOUND},
                       {"C:", ERROR_PATH_NOT_FOUND}};
    for (const auto& one : cases) {
        WIN32_FIND_DATAA data;
        EXPECT_EQ(FindFirstFileA(one.path, &data), INVALID_HANDLE_VALUE) << one.path;
        EXPECT_EQ(GetLastError(), one.error) << one.path;
    }
    EXPECT_EQ(FindFirstFileA("C:\\plain.txt", nullptr), INVALID_HANDLE_VALUE);
}

TEST_F(AccessTest, FindsFilesFoldersAndRoots) {
    for (const char* path : {"c:\\PLAIN.txt", "C:\\Program Files", "C:\\Program Files\\", "C:\\", "d:\\", "C:"})
        EXPECT_EQ(_access(path, 0), 0) << path;
    for (const char* path : {"C:\\plain.txt\\", "C:\\plain", "X:\\", "", "plain.txt"}) {
        errno = 0;
        EXPECT_EQ(_access(path, 0), -1) << path;
        EXPECT_EQ(errno, ENOENT);
    }
    EXPECT_EQ(_access("\"C:\\plain.txt\"", 0), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(_access(nullptr, 0), -1);
    EXPECT_EQ(errno, EINVAL);
}

TEST_F(FileVersionTest, IsFoundInTheResource) {
    const char* path = "c:\\program files\\client\\TOOL.exe";
    DWORD handle = 5;
    const DWORD size = GetFileVersionInfoSizeA(path, &handle);
    EXPECT_EQ(handle, 0u);
    ASSERT_GE(size, 92u);
    std::vector<char> block(size);
    ASSERT_TRUE(GetFileVersionInfoA(path, 0, size, block.data()));
    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\", &value, &length));
    EXPECT_EQ(length, sizeof(VS_FIXEDFILEINFO));
    VS_FIXEDFILEINFO info;
    std::memcpy(&info, value, sizeof info);
    EXPECT_EQ(info.dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(info.dwFileVersionMS, 0x00060000u);
    EXPECT_EQ(info.dwFileVersionLS, 0x0B540884u);
}

TEST_F(FileVersionTest, NeedsAFileWithAResource) {
    EXPECT_EQ(GetFileVersionInfoSizeA("C:\\plain.txt", nullptr), 0u);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_RESOURCE_DATA_NOT_FOUND});
    EXPECT_EQ(GetFileVersionInfoSizeA("C:\\none.exe", nullptr), 0u);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(GetFileVersionInfoSizeA(nullptr, nullptr), 0u);
    std::array<char, 100> block{};
    EXPECT_FALSE(GetFileVersionInfoA("C:\\plain.txt", 0, block.size(), block.data()));
    EXPECT_FALSE(GetFileVersionInfoA("C:\\Program Files\\Client\\Tool.exe", 0, 100, nullptr));
}

TEST_F(FileVersionTest, IsNotFoundInABlockThatCameFromElsewhere) {
    const std::string block = makeVersionResource({1, 2, 3, 4});
    void* value = nullptr;
    UINT length = 0;
    EXPECT_FALSE(VerQueryValueA(block.data(), "\\", &value, &length));
    EXPECT_FALSE(VerQueryValueA(nullptr, "\\", &value, &length));
}

TEST_F(FileVersionTest, IsFoundInABlockThatHasHeldOneWhenTheNextCouldNotBeRead) {
    const std::string resource = makeVersionResource({1, 2, 3, 4});
    const auto allocate = [&](UINT flags) { return GlobalAlloc(flags, resource.size()); };
    const HGLOBAL first = allocate(GMEM_MOVEABLE);
    resource.copy(static_cast<char*>(GlobalLock(first)), resource.size());
    GlobalFree(first);
    for (const UINT flags : {UINT{GHND}, UINT{GMEM_MOVEABLE}}) {
        const HGLOBAL block = allocate(flags);
        void* memory = GlobalLock(block);
        EXPECT_FALSE(GetFileVersionInfoA("C:\\none.exe", 0, static_cast<DWORD>(resource.size()), memory));
        void* value = nullptr;
        UINT length = 0;
        EXPECT_EQ(VerQueryValueA(memory, "\\", &value, &length) != FALSE, flags == GMEM_MOVEABLE);
        std::memcpy(memory, resource.data(), resource.size());
        GlobalFree(block);
    }
}

TEST(VersionResource, IsReadWithinItsBounds) {
    const std::string whole = makeVersionResource({1, 2, 3, 4});
    ASSERT_EQ(whole.size(), 92u);
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        Station station;
        station.files = {{"C:\\odd.dll", {}, whole.substr(0, size)}};
        const Running running(station);
        const DWORD asked = GetFileVersionInfoSizeA("C:\\odd.dll", nullptr);
        const std::vector<char> copy = [&] {
            std::vector<char> block(size);
            EXPECT_EQ(GetFileVersionInfoA("C:\\odd.dll", 0, static_cast<DWORD>(size), block.data()), size != 0);
            void* value = nullptr;
            UINT length = 7;
            EXPECT_EQ(VerQueryValueA(block.data(), "\\", &value, &length), size == whole.size());
            EXPECT_EQ(value != nullptr, size == whole.size());
            return block;
        }();
        EXPECT_EQ(asked != 0, size != 0);
    }
}

TEST(VersionResource, TellsItsVersionInTheFirst16BytesOfTheRootValue) {
    const std::string whole = makeVersionResource({6, 0, 2900, 2180}).substr(40);
    for (std::size_t size = 0; size <= whole.size(); ++size)
        EXPECT_EQ(versionIn(whole.substr(0, size)).has_value(), size >= 16) << size;
    EXPECT_EQ(versionText(*versionIn(whole.substr(0, 16))), "6.0.2900.2180");
}

TEST(VersionResource, HasNoRootValueWithoutFixedInformation) {
    std::string block = makeVersionResource({1, 2, 3, 4});
    block[2] = 0;
    EXPECT_FALSE(findRootValue(block));
}

TEST_F(DriveTest, HasATypeUnderItsRootAlone) {
    EXPECT_EQ(GetDriveTypeA("C:\\"), UINT{DRIVE_FIXED});
    EXPECT_EQ(GetDriveTypeA("d:\\"), UINT{DRIVE_CDROM});
    for (const char* root : {"A:\\", "C:", "C", "", "C:\\x", static_cast<const char*>(nullptr)})
        EXPECT_EQ(GetDriveTypeA(root), UINT{DRIVE_NO_ROOT_DIR});
}

TEST_F(DriveTest, TellsLabelFileSystemAndSerialNumber) {
    std::array<char, 259> label{};
    std::array<char, 259> fileSystem{};
    DWORD serial = 0;
    EXPECT_TRUE(GetVolumeInformationA("C:\\", label.data(), 259, &serial, nullptr, nullptr, fileSystem.data(), 259));
    EXPECT_STREQ(label.data(), "SYSTEM");
    EXPECT_STREQ(fileSystem.data(), "NTFS");
    EXPECT_EQ(serial, 0x12345678u);
    EXPECT_TRUE(GetVolumeInformationA("E:\\", label.data(), 259, nullptr, nullptr, nullptr, fileSystem.data(), 259));
    EXPECT_STREQ(label.data(), "");
    EXPECT_STREQ(fileSystem.data(), "FAT");
    EXPECT_TRUE(GetVolumeInformationA("C:\\", nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0));
    EXPECT_FALSE(GetVolumeInformationA("C:\\", label.data(), 6, nullptr, nullptr, nullptr, nullptr, 0));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_LENGTH});
    EXPECT_FALSE(GetVolumeInformationA("D:\\", label.data(), 259, nullptr, nullptr, nullptr, nullptr, 0));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_READY});
    EXPECT_FALSE(GetVolumeInformationA("Z:\\", label.data(), 259, nullptr, nullptr, nullptr, nullptr, 0));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
}

TEST_F(DriveTest, TellsItsSpaceInBytesAndInClusters) {
    ULARGE_INTEGER free{};
    ULARGE_INTEGER total{};
    ULARGE_INTEGER totalFree{};
    EXPECT_TRUE(sim_GetDiskFreeSpaceExA("C:\\", &free, &total, &totalFree));
    EXPECT_EQ(free.QuadPart, 65616084992u);
    EXPECT_EQ(total.QuadPart, 160039235584u);
    EXPECT_EQ(totalFree.QuadPart, 70000000000u);
    EXPECT_TRUE(sim_GetDiskFreeSpaceExA("C:\\", nullptr, nullptr, nullptr));
    EXPECT_FALSE(sim_GetDiskFreeSpaceExA("E:\\", &free, &total, nullptr));
    DWORD numbers[4] = {};
    EXPECT_TRUE(GetDiskFreeSpaceA("C:\\", &numbers[0], &numbers[1], &numbers[2], &numbers[3]));
    EXPECT_THAT(numbers, testing::ElementsAre(8, 512, 16019552, 39072079));
    EXPECT_TRUE(GetDiskFreeSpaceA("E:\\", &numbers[0], &numbers[1], &numbers[2], &numbers[3]));
    EXPECT_THAT(numbers, testing::ElementsAre(4, 512, 10, 20));
    EXPECT_FALSE(GetDiskFreeSpaceA("D:\\", &numbers[0], &numbers[1], &numbers[2], &numbers[3]));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_READY});
}

}  // namespace
