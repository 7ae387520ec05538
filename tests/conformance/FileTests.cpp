// Files: which are there, and the versions in them.
#include <cerrno>
#include <cstring>
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

std::string upper(std::string text) {
    _strupr(text.data());
    return text;
}

void testFind(Suite& suite) {
    const Check check = suite.of("FindFirstFileA");
    const Check close = suite.of("FindClose");
    const struct {
        const char* path;
        const char* name;
        bool isFolder;
    } found[] = {{"plain.txt", "plain.txt", false},
                 {"PLAIN.TXT", "plain.txt", false},
                 {"folder WITH blanks", "Folder with blanks", true},
                 {"folder with blanks\\long name OF A file.TEXT", "Long Name of a File.text", false},
                 {"Folder with blanks\\INNER", "Inner", true},
                 {"Folder with blanks\\Inner\\deep.txt", "deep.txt", false},
                 {"k\xE4se.txt", "k\xE4se.txt", false},
                 {"two.dots.txt", "two.dots.txt", false}};
    for (const auto& one : found) {
        const std::string at = "\""s + one.path + "\": ";
        WIN32_FIND_DATAA data;
        std::memset(&data, 0x5A, sizeof data);
        const auto made = suite.make([&] { return FindFirstFileA(suite.world.folder(one.path).c_str(), &data); });
        check.holds(at + "found", made.result != INVALID_HANDLE_VALUE);
        check.text(at + "its true name", data.cFileName, one.name);
        check.equal(at + "folder", (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0, one.isFolder);
        close.equal(at + "result", FindClose(made.result), TRUE);
    }
    WIN32_FIND_DATAA data;
    const struct {
        const char* what;
        std::string path;
        DWORD error;
    } missing[] = {
        {"a missing file", suite.world.folder("none.txt"), ERROR_FILE_NOT_FOUND},
        {"the head of a name", suite.world.folder("plain"), ERROR_FILE_NOT_FOUND},
        {"a missing folder", suite.world.folder("none\\plain.txt"), ERROR_PATH_NOT_FOUND},
        {"two missing folders", suite.world.folder("none\\none\\plain.txt"), ERROR_PATH_NOT_FOUND},
        {"a missing folder in a file", suite.world.folder("plain.txt\\none\\none"), ERROR_PATH_NOT_FOUND},
        {"a path in quotes", "\"" + suite.world.folder("plain.txt") + "\"", ERROR_INVALID_NAME},
        {"a backslash at the end of a folder", suite.world.folder("Folder with blanks\\"), ERROR_FILE_NOT_FOUND},
        {"a root", suite.world.driveRoot(), ERROR_FILE_NOT_FOUND},
        {"a missing drive", suite.world.missingRoot() + "none.txt", ERROR_PATH_NOT_FOUND},
        {"nothing", "", ERROR_PATH_NOT_FOUND}};
    for (const auto& one : missing) {
        const auto made = suite.make([&] { return FindFirstFileA(one.path.c_str(), &data); });
        check.holds(one.what + ": none"s, made.result == INVALID_HANDLE_VALUE);
        check.equal(one.what + ": error"s, made.error, one.error);
    }
    const auto inFile =
        suite.make([&] { return FindFirstFileA(suite.world.folder("plain.txt\\none").c_str(), &data); });
    check.holds("a file as folder: none", inFile.result == INVALID_HANDLE_VALUE);
    check.exceptUnderWine("Wine calls the name invalid")
        .equal("a file as folder: error", inFile.error, ERROR_DIRECTORY);
    const auto none = suite.make([] { return FindClose(INVALID_HANDLE_VALUE); });
    close.equal("no search: result", none.result, FALSE);
    close.equal("no search: error", none.error, ERROR_INVALID_HANDLE);
}

void testAccess(Suite& suite) {
    const Check check = suite.of("_access");
    const World& world = suite.world;
    const struct {
        const char* what;
        std::string path;
    } there[] = {{"a file", world.folder("plain.txt")},
                 {"another letter case", world.folder("PLAIN.txt")},
                 {"a whole path in upper case", upper(world.folder("two.dots.txt"))},
                 {"a folder", world.folder("Folder with blanks")},
                 {"a folder with a backslash at its end", world.folder("Folder with blanks\\")},
                 {"a file in folders", world.folder("Folder with blanks\\Inner\\deep.txt")},
                 {"a letter of the code page", world.folder("k\xE4se.txt")},
                 {"a root", world.driveRoot()}};
    for (const auto& one : there)
        check.equal(one.what, _access(one.path.c_str(), 0), 0);
    const struct {
        const char* what;
        std::string path;
        int error = ENOENT;
    } missing[] = {{"a missing file", world.folder("none.txt")},
                   {"the head of a name", world.folder("plain")},
                   {"a file in a missing folder", world.folder("none\\plain.txt")},
                   {"a file in a file", world.folder("plain.txt\\none")},
                   {"a path in quotes", "\"" + world.folder("plain.txt") + "\"", EINVAL},
                   {"a quote at the end", world.folder("plain.txt\""), EINVAL},
                   {"a vertical bar", world.folder("plain|.txt"), EINVAL},
                   {"a path with arguments", world.folder("plain.txt") + " /x"},
                   {"a missing drive", world.missingRoot()},
                   {"nothing", ""}};
    for (const auto& one : missing) {
        errno = 0;
        check.equal(one.what + ": result"s, _access(one.path.c_str(), 0), -1);
        check.equal(one.what + ": errno"s, errno, one.error);
    }
}

void checkBlock(Suite& suite, const Check& read, const Check& query, const char* path, std::size_t size) {
    std::vector<char> block(size);
    const auto made = suite.make([&] { return GetFileVersionInfoA(path, 0, static_cast<DWORD>(size), block.data()); });
    read.equal("the whole: result", made.result, TRUE);
    for (const char* root : {"\\", ""}) {
        const std::string at = *root != '\0' ? "the root: " : "an empty name: ";
        void* value = nullptr;
        UINT length = 7;
        query.equal(at + "result", VerQueryValueA(block.data(), root, &value, &length), TRUE);
        query.equal(at + "length", length, sizeof(VS_FIXEDFILEINFO));
        query.holds(at + "within the block", value >= block.data() && value < block.data() + size);
        VS_FIXEDFILEINFO info{};
        if (value != nullptr)
            std::memcpy(&info, value, sizeof info);
        query.equal(at + "signature", info.dwSignature, 0xFEEF04BD);
        query.equal(at + "version, upper half", info.dwFileVersionMS, 0x00010000);
        query.equal(at + "version, lower half", info.dwFileVersionLS, 0);
    }
    void* value = nullptr;
    UINT length = 7;
    const auto missing = suite.make([&] { return VerQueryValueA(block.data(), "\\None", &value, &length); });
    query.equal("a missing name: result", missing.result, FALSE);
    query.equal("a missing name: error", missing.error, ERROR_RESOURCE_TYPE_NOT_FOUND);
    query.equal("a missing name: length", length, 0);
}

void testFileVersions(Suite& suite) {
    const Check size = suite.of("GetFileVersionInfoSizeA");
    const Check read = suite.of("GetFileVersionInfoA");
    const Check query = suite.of("VerQueryValueA");
    const std::string program = suite.world.folder("PROGRAM.exe");
    DWORD handle = 5;
    const auto asked = suite.make([&] { return GetFileVersionInfoSizeA(program.c_str(), &handle); });
    size.holds("a program: a size", asked.result >= sizeof(VS_FIXEDFILEINFO) + 40);
    size.equal("a program: the handle is zero", handle, 0);
    size.equal("a program, without a handle: the same", GetFileVersionInfoSizeA(program.c_str(), nullptr),
               asked.result);
    checkBlock(suite, read, query, program.c_str(), asked.result);

    struct {
        const char* what;
        std::string path;
        DWORD error;
    } const cases[] = {{"no program", suite.world.folder("no program.dll"), ERROR_RESOURCE_DATA_NOT_FOUND},
                       {"a missing file", suite.world.folder("none.exe"), ERROR_FILE_NOT_FOUND},
                       {"a missing folder", suite.world.folder("none\\none.exe"), ERROR_PATH_NOT_FOUND}};
    for (const auto& one : cases) {
        handle = 5;
        const auto made = suite.make([&] { return GetFileVersionInfoSizeA(one.path.c_str(), &handle); });
        size.equal(one.what + ": result"s, made.result, 0);
        size.equal(one.what + ": error"s, made.error, one.error);
        size.equal(one.what + ": handle"s, handle, 0);
        Room block(256);
        const auto readMade = suite.make([&] { return GetFileVersionInfoA(one.path.c_str(), 0, 256, block.data()); });
        read.equal(one.what + ": result"s, readMade.result, FALSE);
        read.equal(one.what + ": error"s, readMade.error, one.error);
        read.holds(one.what + ": nothing is written behind the block"s, block.isUntouchedBehind());
    }
    const auto null = suite.make([] { return GetFileVersionInfoSizeA(nullptr, nullptr); });
    size.equal("null: result", null.result, 0);
    const auto noData = suite.make([&] { return GetFileVersionInfoA(program.c_str(), 0, asked.result, nullptr); });
    read.equal("no block: result", noData.result, FALSE);
    read.equal("no block: error", noData.error, ERROR_INVALID_DATA);
    // As much as fits: the root's value lies in its first half.
    Room half(asked.result / 2);
    read.equal("half a block: result",
               GetFileVersionInfoA(program.c_str(), 0, static_cast<DWORD>(half.size()), half.data()), TRUE);
    read.holds("half a block: nothing is written behind it", half.isUntouchedBehind());
}

}  // namespace

void testFiles(Suite& suite) {
    testFind(suite);
    testAccess(suite);
    testFileVersions(suite);
}

}  // namespace conformance
