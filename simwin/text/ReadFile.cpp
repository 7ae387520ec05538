#include "simwin/text/ReadFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace simwin {
namespace {

#ifdef _WIN32
using FileStatus = struct _stat64;
int openToRead(const std::filesystem::path& path) {
    return _wopen(path.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}
bool takeStatus(int file, FileStatus& status) {
    return _fstat64(file, &status) == 0;
}
auto readBlock(int file, char* block, std::size_t size) {
    return _read(file, block, static_cast<unsigned>(size));
}
void closeFile(int file) {
    _close(file);
}
#else
using FileStatus = struct stat;
// Opening a pipe would wait for its writer.
int openToRead(const std::filesystem::path& path) {
    return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}
bool takeStatus(int file, FileStatus& status) {
    return fstat(file, &status) == 0;
}
auto readBlock(int file, char* block, std::size_t size) {
    return read(file, block, size);
}
void closeFile(int file) {
    close(file);
}
#endif

[[noreturn]] void failToRead(const std::string& name, int code) {
    throw ReadError(name + " cannot be read: " + std::generic_category().message(code) + " (error " +
                    std::to_string(code) + ")");
}

[[noreturn]] void refuse(const std::string& name, const char* kind) {
    throw ReadError(name + " is " + kind + "; only a file is read here");
}

// Before it is opened: to open a device may do something by itself, and Windows says of a folder that the right to open
// it is missing.
void checkKind(const std::filesystem::path& path, const std::string& name) {
    std::error_code error;
    switch (std::filesystem::status(path, error).type()) {
        case std::filesystem::file_type::directory:
            failToRead(name, EISDIR);
        case std::filesystem::file_type::fifo:
            refuse(name, "a pipe");
        case std::filesystem::file_type::socket:
            refuse(name, "a socket");
        case std::filesystem::file_type::block:
        case std::filesystem::file_type::character:
            refuse(name, "a device");
        default:
            break;
    }
}

class OpenFile {
  public:
    OpenFile(const std::filesystem::path& path, const std::string& name) : m_file(openToRead(path)), m_name(name) {
        if (m_file < 0)
            failToRead(name, errno);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { closeFile(m_file); }

    // As the system tells it; what it makes at each read, as those in /proc, is longer.
    std::size_t toldSize() const {
        FileStatus status{};
        if (!takeStatus(m_file, status))
            failToRead(m_name, errno);
        if ((status.st_mode & S_IFMT) != S_IFREG)
            refuse(m_name, "no file");
        return static_cast<std::size_t>(status.st_size);
    }

    // False at the file's end.
    bool appendBlock(std::string& bytes) const {
        char block[std::size_t{1} << 16];
        const auto count = readBlock(m_file, block, sizeof block);
        if (count < 0)
            failToRead(m_name, errno);
        bytes.append(block, static_cast<std::size_t>(count));
        return count > 0;
    }

  private:
    int m_file;
    const std::string& m_name;
};

std::string sizeText(std::size_t bytes) {
    for (const auto& [shift, unit] : {std::pair{20, " MiB"}, std::pair{10, " KiB"}})
        if (bytes % (std::size_t{1} << shift) == 0)
            return std::to_string(bytes >> shift) + unit;
    return std::to_string(bytes) + " bytes";
}

}  // namespace

std::string readFile(const std::filesystem::path& path, const std::string& name, std::size_t limit) {
    checkKind(path, name);
    const OpenFile file(path, name);
    if (file.toldSize() > limit)
        throw tooLong(name, limit);
    std::string bytes;
    while (file.appendBlock(bytes))
        if (bytes.size() > limit)
            throw tooLong(name, limit);
    return bytes;
}

ReadError tooLong(const std::string& name, std::size_t limit) {
    return ReadError(name + " is longer than " + sizeText(limit));
}

}  // namespace simwin
