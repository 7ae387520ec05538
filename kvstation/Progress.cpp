#include "kvstation/Progress.h"

#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include "kvstation/StreamAside.h"

namespace kvstation {
namespace {

constexpr std::chrono::seconds kMoment{1};
constexpr std::chrono::milliseconds kPause{100};

bool isTerminal() {
#ifdef _WIN32
    return _isatty(kStandardError) != 0;
#else
    return isatty(kStandardError) != 0;
#endif
}

}  // namespace

void Progress::tell(double done) const {
    const Clock::time_point now = Clock::now();
    if (now - m_begin < kMoment || now - m_shown < kPause || !isTerminal())
        return;
    std::fprintf(stderr, "\r%s: %d %%", m_what.c_str(), static_cast<int>(done * 100));
    std::fflush(stderr);
    m_shown = now;
    m_isShown = true;
}

Progress::~Progress() {
    if (m_isShown)
        std::fprintf(stderr, "\r\x1b[K");
}

}  // namespace kvstation
