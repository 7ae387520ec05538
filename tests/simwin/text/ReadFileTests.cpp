#include "simwin/text/ReadFile.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "tests/kvstation/TemporaryFolder.h"

namespace {

using simwin::readFile;

class ReadFile : public testing::Test {
  protected:
    std::string errorOf(const std::string& path, std::size_t limit = 16) {
        try {
            readFile(path, "data", limit);
        } catch (const simwin::ReadError& error) {
            return error.what();
        }
        return "none";
    }
    void write(std::string_view content) { std::ofstream(file, std::ios::binary) << content; }

    kvstation::TemporaryFolder folder;
    const std::string file = folder / "file";
};

TEST_F(ReadFile, GivesTheBytesUpToTheLimit) {
    const std::string content("a\0\r\n\x1A\xFF", 6);
    write(content);
    EXPECT_EQ(readFile(file, "data", 7), content);
    EXPECT_EQ(readFile(file, "data", 6), content);
    EXPECT_EQ(errorOf(file, 5), "data is longer than 5 bytes");
    write("");
    EXPECT_EQ(readFile(file, "data", 0), "");
}

TEST_F(ReadFile, TellsTheLimitInRoundUnits) {
    write("a");
    std::filesystem::resize_file(file, (5 << 20) + 1);
    EXPECT_EQ(errorOf(file, 5 << 20), "data is longer than 5 MiB");
    EXPECT_EQ(errorOf(file, 3 << 10), "data is longer than 3 KiB");
}

TEST_F(ReadFile, RefusesAFileThatIsHugeAndEmpty) {
    write("");
    std::filesystem::resize_file(file, std::uintmax_t{1} << 40);
    EXPECT_EQ(errorOf(file), "data is longer than 16 bytes");
}

// Its size is 0 as told, and it goes on for terabytes.
TEST_F(ReadFile, HoldsTheLimitWhereTheToldSizeIsWrong) {
    ASSERT_EQ(std::filesystem::file_size("/proc/self/pagemap"), 0u);
    EXPECT_EQ(errorOf("/proc/self/pagemap", 1 << 20), "data is longer than 1 MiB");
}

TEST_F(ReadFile, ReadsWhatTheSystemMakesAtEachRead) {
    const std::string status = readFile("/proc/self/status", "data", 1 << 20);
    EXPECT_TRUE(status.starts_with("Name:")) << status;
}

// Nobody writes into the pipe: who waited for it would not come back.
TEST_F(ReadFile, RefusesAPipeByItsNameAndWaitsForNobody) {
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(errorOf(file), "data is a pipe; only a file is read here");
}

TEST_F(ReadFile, RefusesADeviceAlsoBehindALink) {
    EXPECT_EQ(errorOf("/dev/zero"), "data is a device; only a file is read here");
    std::filesystem::create_symlink("/dev/zero", file);
    EXPECT_EQ(errorOf(file), "data is a device; only a file is read here");
}

TEST_F(ReadFile, RefusesASocket) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    ASSERT_LT(file.size(), sizeof address.sun_path);
    std::ranges::copy(file, address.sun_path);
    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(made);
    EXPECT_EQ(errorOf(file), "data is a socket; only a file is read here");
}

TEST_F(ReadFile, TellsTheSystemsReason) {
    EXPECT_EQ(errorOf(folder / "none"), "data cannot be read: No such file or directory (error 2)");
    EXPECT_EQ(errorOf(folder / "."), "data cannot be read: Is a directory (error 21)");
    std::filesystem::create_symlink(file, file);
    EXPECT_EQ(errorOf(file), "data cannot be read: Too many levels of symbolic links (error 40)");
    EXPECT_EQ(errorOf("/proc/self/mem"), "data cannot be read: Input/output error (error 5)");
}

}  // namespace
