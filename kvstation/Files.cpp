#include "kvstation/Files.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include "kvstation/Errors.h"
#ifdef _WIN32
#include "kvstation/Utf16.h"
#endif

namespace kvstation {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OwnedFile = std::unique_ptr<std::FILE, CloseFile>;

// Windows says of a folder that the right to open it is missing, Linux says what it is.
int reasonOf(const std::filesystem::path& path, int code) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored) ? EISDIR : code;
}

bool lacksItsFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    return path.has_parent_path() && !std::filesystem::exists(path.parent_path(), ignored);
}

// In all that follows `name` is the one that an error tells.
[[noreturn]] void failToRead(const std::filesystem::path& path, const std::string& name, int code) {
    throw Failure(describeFileError(name, "read", reasonOf(path, code)));
}

[[noreturn]] void failToWrite(const std::filesystem::path& path, const std::string& name, int code) {
    throw Failure(describeFileError(name, "written", reasonOf(path, code)) +
                  (lacksItsFolder(path) ? "; make its folder first" : ""));
}

OwnedFile open(const std::filesystem::path& path, bool forWriting, const std::string& name) {
#ifdef _WIN32
    OwnedFile file(_wfopen(path.c_str(), forWriting ? L"wb" : L"rb"));
#else
    OwnedFile file(std::fopen(path.c_str(), forWriting ? "wb" : "rb"));
#endif
    if (!file && forWriting)
        failToWrite(path, name, errno);
    if (!file)
        failToRead(path, name, errno);
    return file;
}

void fill(const std::filesystem::path& path, std::string_view bytes, const std::string& name) {
    OwnedFile file = open(path, true, name);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed)
        failToWrite(path, name, errno);
}

// A file can be replaced by another one; a device, a pipe and what a link leads to cannot.
bool isReplaceable(const std::filesystem::path& path) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::symlink_status(path, ignored);
    return !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
}

// Beside the old file, in whose place it comes when it is whole.
void replace(const std::filesystem::path& path, std::string_view bytes, const std::string& name) {
    std::filesystem::path part = path;
    part += ".part";
    std::error_code error;
    try {
        fill(part, bytes, name);
    } catch (const Failure&) {
        std::filesystem::remove(part, error);
        throw;
    }
    std::filesystem::rename(part, path, error);
    if (!error)
        return;
    const std::string message = describeFileError(name, "written", error.default_error_condition().value());
    std::filesystem::remove(part, error);
    throw Failure(message);
}

}  // namespace

std::filesystem::path pathOf(const std::string& utf8) {
#ifdef _WIN32
    return toWide(utf8);
#else
    return utf8;
#endif
}

std::string checkFileName(const std::string& path) {
    return path.empty() ? "the file name is empty" : "";
}

bool isFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(pathOf(path), ignored);
}

std::string readFile(const std::string& path, std::size_t limit) {
    const std::filesystem::path whole = pathOf(path);
    const OwnedFile file = open(whole, false, path);
    std::string bytes;
    char block[4096];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
        bytes.append(block, count);
        if (bytes.size() > limit)
            throw Failure(path + " is longer than " + std::to_string(limit) + " bytes: it is no station record");
    }
    if (std::ferror(file.get()) != 0)
        failToRead(whole, path, errno);
    return bytes;
}

void writeFile(const std::string& path, std::string_view bytes) {
    const std::filesystem::path whole = pathOf(path);
    if (isReplaceable(whole))
        replace(whole, bytes, path);
    else
        fill(whole, bytes, path);
}

}  // namespace kvstation
