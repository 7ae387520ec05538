#include "kvstation/platform/Files.h"

#include <cerrno>
#include <cstdio>
#include <deque>
#include <memory>

#include "kvstation/platform/Errors.h"
#include "simwin/text/ReadFile.h"
#ifdef _WIN32
#include "framework/Windows.h"
#include "kvstation/platform/Utf16.h"
#else
#include <unistd.h>
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
[[noreturn]] void failToWrite(const std::filesystem::path& path, const std::string& name, int code) {
    throw Failure(describeFileError(name, "written", reasonOf(path, code)) +
                  (lacksItsFolder(path) ? "; make its folder first" : ""));
}

OwnedFile openToWrite(const std::filesystem::path& path, const std::string& name) {
#ifdef _WIN32
    OwnedFile file(_wfopen(path.c_str(), L"wb"));
#else
    OwnedFile file(std::fopen(path.c_str(), "wb"));
#endif
    if (!file)
        failToWrite(path, name, errno);
    return file;
}

void fill(const std::filesystem::path& path, std::string_view bytes, const std::string& name) {
    OwnedFile file = openToWrite(path, name);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed)
        failToWrite(path, name, errno);
}

// A link stays, and the file that it leads to is the one that is written.
std::filesystem::path behindLink(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::path file = std::filesystem::canonical(path, error);
    return error || !std::filesystem::is_regular_file(file, error) ? path : file;
}

// So that two of these processes, or a file that happens to be called so, are not in each other's way.
std::string partEnding() {
#ifdef _WIN32
    return "." + std::to_string(GetCurrentProcessId()) + ".part";
#else
    return "." + std::to_string(getpid()) + ".part";
#endif
}

// A file can be replaced by another one; a device, a pipe and a link that leads to no file cannot.
bool isReplaceable(const std::filesystem::path& path) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::symlink_status(path, ignored);
    return !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
}

// A file's new content, beside the old file in whose place it comes when all is well. What is not replaceable is filled
// as it stands.
class NewContent {
  public:
    NewContent(const std::string& name, std::string_view bytes)
        : m_name(name), m_path(behindLink(pathOf(name))), m_bytes(bytes), m_isReplaceable(isReplaceable(m_path)) {
        if (!m_isReplaceable)
            return;
        m_part = m_path;
        m_part += partEnding();
        try {
            fill(m_part, bytes, name);
        } catch (const Failure&) {
            discard();
            throw;
        }
    }
    NewContent(const NewContent&) = delete;
    NewContent& operator=(const NewContent&) = delete;
    ~NewContent() { discard(); }

    void putInPlace() {
        if (!m_isReplaceable)
            return fill(m_path, m_bytes, m_name);
        std::error_code error;
        std::filesystem::rename(m_part, m_path, error);
        if (error)
            throw Failure(describeFileError(m_name, "written", error.default_error_condition().value()));
        m_part.clear();
    }

  private:
    void discard() const {
        std::error_code ignored;
        if (!m_part.empty())
            std::filesystem::remove(m_part, ignored);
    }

    const std::string& m_name;
    const std::filesystem::path m_path;
    const std::string_view m_bytes;
    const bool m_isReplaceable;
    std::filesystem::path m_part;  // empty when there is none any more
};

}  // namespace

std::filesystem::path pathOf(const std::string& utf8) {
#ifdef _WIN32
    return toWide(utf8);
#else
    return utf8;
#endif
}

std::string utf8Of(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

std::string checkFileName(const std::string& path) {
    return path.empty() ? "the file name is empty" : "";
}

bool isFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(pathOf(path), ignored);
}

std::string readFile(const std::string& path, std::size_t limit) {
    try {
        return simwin::readFile(pathOf(path), path, limit);
    } catch (const simwin::ReadError& error) {
        throw Failure(error.what());
    }
}

void writeFile(const std::string& path, std::string_view bytes) {
    NewContent(path, bytes).putInPlace();
}

void writeFiles(const std::vector<NewFile>& files) {
    std::deque<NewContent> contents;
    for (const NewFile& file : files)
        contents.emplace_back(file.path, file.bytes);
    for (NewContent& content : contents)
        content.putInPlace();
}

}  // namespace kvstation
