#include "kvstation/platform/StreamAside.h"

#include <cerrno>
#include <cstdio>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace kvstation {
namespace {

#ifdef _WIN32
int openNowhere() {
    return _open("NUL", _O_WRONLY);
}
int copyOf(int file) {
    return _dup(file);
}
void put(int file, int place) {
    _dup2(file, place);
}
void closeFile(int file) {
    _close(file);
}
auto writeSome(int file, std::string_view bytes) {
    _setmode(file, _O_BINARY);
    return _write(file, bytes.data(), static_cast<unsigned>(bytes.size()));
}
#else
int openNowhere() {
    return open("/dev/null", O_WRONLY | O_CLOEXEC);
}
int copyOf(int file) {
    return dup(file);
}
void put(int file, int place) {
    dup2(file, place);
}
void closeFile(int file) {
    close(file);
}
auto writeSome(int file, std::string_view bytes) {
    return write(file, bytes.data(), bytes.size());
}
#endif

std::FILE* streamOf(int file) {
    return file == kStandardOutput ? stdout : stderr;
}

}  // namespace

StreamAside::StreamAside(int file) : m_file(file), m_kept(copyOf(file)) {
    std::fflush(streamOf(file));
    const int nowhere = openNowhere();
    put(nowhere, file);
    closeFile(nowhere);
}

StreamAside::~StreamAside() {
    std::fflush(streamOf(m_file));
    if (m_kept == -1)
        return;
    put(m_kept, m_file);
    closeFile(m_kept);
}

bool writeTo(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto written = writeSome(file, bytes);
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace kvstation
