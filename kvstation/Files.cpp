#include "kvstation/Files.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
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

std::filesystem::path nativePath(const std::string& path) {
#ifdef _WIN32
    return toWide(path);
#else
    return path;
#endif
}

OwnedFile open(const std::string& path, bool forWriting) {
#ifdef _WIN32
    OwnedFile file(_wfopen(toWide(path).c_str(), forWriting ? L"wb" : L"rb"));
#else
    OwnedFile file(std::fopen(path.c_str(), forWriting ? "wb" : "rb"));
#endif
    if (!file)
        throw Failure(describeLibraryError("fopen", path, errno));
    return file;
}

}  // namespace

bool isFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(nativePath(path), ignored);
}

std::string readFile(const std::string& path, std::size_t limit) {
    const OwnedFile file = open(path, false);
    std::string bytes;
    char block[4096];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
        bytes.append(block, count);
        if (bytes.size() > limit)
            throw Failure(path + " is longer than " + std::to_string(limit) + " bytes: it is no station record");
    }
    if (std::ferror(file.get()) != 0)
        throw Failure(describeLibraryError("fread", path, errno));
    return bytes;
}

void writeFile(const std::string& path, std::string_view bytes) {
    OwnedFile file = open(path, true);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    const bool closed = std::fclose(file.release()) == 0;
    if (written && closed)
        return;
    const std::string message = describeLibraryError("fwrite", path, errno);
    std::error_code ignored;
    std::filesystem::remove(nativePath(path), ignored);
    throw Failure(message);
}

}  // namespace kvstation
