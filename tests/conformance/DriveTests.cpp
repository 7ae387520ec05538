// Drives: kinds, labels, room.
#include <cctype>
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

std::string lower(std::string root) {
    root[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(root[0])));
    return root;
}

void testType(Suite& suite) {
    const Check check = suite.of("GetDriveTypeA");
    const std::string root = suite.world.driveRoot();
    const UINT type = GetDriveTypeA(root.c_str());
    check.holds("a drive: its type", type >= DRIVE_REMOVABLE && type <= DRIVE_RAMDISK);
    check.equal("its letter in lower case: the same", GetDriveTypeA(lower(root).c_str()), type);
    check.equal("a missing drive", GetDriveTypeA(suite.world.missingRoot().c_str()), DRIVE_NO_ROOT_DIR);
    check.equal("no drive's letter", GetDriveTypeA("1:\\"), DRIVE_NO_ROOT_DIR);
    check.equal("a missing folder", GetDriveTypeA((root + "kvconform none\\").c_str()), DRIVE_NO_ROOT_DIR);
}

struct Volume {
    Room label{64};
    Room fileSystem{64};
    DWORD serial = 0;
    DWORD longest = 0;
    DWORD flags = 0;
};

BOOL ask(const std::string& root, Volume& volume, DWORD labelSize, DWORD fileSystemSize) {
    return GetVolumeInformationA(root.c_str(), volume.label.data(), labelSize, &volume.serial, &volume.longest,
                                 &volume.flags, volume.fileSystem.data(), fileSystemSize);
}

void testVolume(Suite& suite) {
    const Check check = suite.of("GetVolumeInformationA");
    const std::string root = suite.world.driveRoot();
    Volume whole;
    check.equal("a drive: result", ask(root, whole, 64, 64), TRUE);
    const auto fileSystem = static_cast<DWORD>(whole.fileSystem.text().size());
    const auto label = static_cast<DWORD>(whole.label.text().size());
    check.holds("a drive: its file system", fileSystem > 0 && fileSystem < 63);
    check.holds("a drive: its label ends", label < 64 && whole.label.isUntouchedFrom(label + 1));
    check.holds("a drive: the longest name", whole.longest >= 12);
    Volume again;
    check.equal("in lower case: result", ask(lower(root), again, 64, 64), TRUE);
    check.holds("in lower case: the same", again.serial == whole.serial && again.label.text() == whole.label.text());
    Volume exact;
    check.equal("exactly full: result", ask(root, exact, label + 1, fileSystem + 1), TRUE);
    check.text("exactly full: file system", exact.fileSystem.text(), whole.fileSystem.text());
    check.holds("exactly full: nothing is written behind", exact.fileSystem.isUntouchedFrom(fileSystem + 1));
    Volume tight;
    const auto made = suite.make([&] { return ask(root, tight, 64, fileSystem); });
    check.equal("a file system one byte short: result", made.result, FALSE);
    check.equal("a file system one byte short: error", made.error, ERROR_BAD_LENGTH);
    check.holds("a file system one byte short: nothing is written behind",
                tight.fileSystem.isUntouchedFrom(fileSystem));
    check.equal("nothing asked: result",
                GetVolumeInformationA(root.c_str(), nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0), TRUE);
    const auto missing = suite.make([&] { return ask(suite.world.missingRoot(), tight, 64, 64); });
    check.equal("a missing drive: result", missing.result, FALSE);
    check.equal("a missing drive: error", missing.error, ERROR_PATH_NOT_FOUND);
}

void testSpace(Suite& suite) {
    const Check check = suite.of("GetDiskFreeSpaceA");
    const std::string root = suite.world.driveRoot();
    DWORD sectors = 0;
    DWORD bytes = 0;
    DWORD free = 0;
    DWORD total = 0;
    check.equal("a drive: result", GetDiskFreeSpaceA(root.c_str(), &sectors, &bytes, &free, &total), TRUE);
    check.holds("a drive: sectors", sectors > 0 && bytes >= 512 && bytes % 512 == 0);
    check.holds("a drive: no more is free than there is", free <= total && total > 0);
    check.equal("in lower case: result", GetDiskFreeSpaceA(lower(root).c_str(), &sectors, &bytes, &free, &total), TRUE);
    check.equal("nothing asked: result", GetDiskFreeSpaceA(root.c_str(), nullptr, nullptr, nullptr, nullptr), TRUE);
    const auto missing = suite.make(
        [&] { return GetDiskFreeSpaceA(suite.world.missingRoot().c_str(), &sectors, &bytes, &free, &total); });
    check.equal("a missing drive: result", missing.result, FALSE);
    check.equal("a missing drive: error", missing.error, ERROR_PATH_NOT_FOUND);
}

void testSpaceEx(Suite& suite) {
    const Check check = suite.of("GetDiskFreeSpaceExA");
    const Library kernel("KERNEL32.dll");
    const auto spaceOf = kernel.find<decltype(&GetDiskFreeSpaceExA)>("GetDiskFreeSpaceExA");
    check.holds("it is there", spaceOf != nullptr);
    if (spaceOf == nullptr)
        return;
    const std::string root = suite.world.driveRoot();
    ULARGE_INTEGER free{};
    ULARGE_INTEGER total{};
    ULARGE_INTEGER totalFree{};
    check.equal("a drive: result", spaceOf(root.c_str(), &free, &total, &totalFree), TRUE);
    check.holds("a drive: no more is free than there is", totalFree.QuadPart <= total.QuadPart && total.QuadPart > 0);
    check.holds("a drive: no more for the caller than is free", free.QuadPart <= totalFree.QuadPart);
    check.equal("the whole alone: result", spaceOf(root.c_str(), nullptr, &total, nullptr), TRUE);
    check.equal("nothing asked: result", spaceOf(root.c_str(), nullptr, nullptr, nullptr), TRUE);
    check.equal("in lower case: result", spaceOf(lower(root).c_str(), &free, &total, &totalFree), TRUE);
    const auto missing =
        suite.make([&] { return spaceOf(suite.world.missingRoot().c_str(), &free, &total, &totalFree); });
    check.equal("a missing drive: result", missing.result, FALSE);
    check.equal("a missing drive: error", missing.error, ERROR_PATH_NOT_FOUND);
}

}  // namespace

void testDrives(Suite& suite) {
    testType(suite);
    testVolume(suite);
    testSpace(suite);
    testSpaceEx(suite);
}

}  // namespace conformance
