#include "kvstation/StandardOutputAside.h"

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

constexpr int kStandardOutput = 1;

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
#endif

}  // namespace

StandardOutputAside::StandardOutputAside() : m_kept(copyOf(kStandardOutput)) {
    std::fflush(stdout);
    const int nowhere = openNowhere();
    put(nowhere, kStandardOutput);
    closeFile(nowhere);
}

StandardOutputAside::~StandardOutputAside() {
    std::fflush(stdout);
    put(m_kept, kStandardOutput);
    closeFile(m_kept);
}

}  // namespace kvstation
