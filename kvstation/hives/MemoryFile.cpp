#include "kvstation/hives/MemoryFile.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>

#include "kvstation/platform/Errors.h"

namespace kvstation {
namespace {

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

MemoryFile::MemoryFile(std::string_view bytes, const std::string& name) : m_file(memfd_create("hive", MFD_CLOEXEC)) {
    if (m_file >= 0 && writeAll(m_file, bytes))
        return;
    const int error = errno;
    if (m_file >= 0)
        close(m_file);
    throw Failure(describeFileError(name, "kept in memory", error));
}

MemoryFile::~MemoryFile() {
    close(m_file);
}

std::string MemoryFile::path() const {
    return "/proc/self/fd/" + std::to_string(m_file);
}

}  // namespace kvstation
