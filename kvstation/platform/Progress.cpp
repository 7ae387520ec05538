#include "kvstation/platform/Progress.h"

#include <cmath>
#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include "kvstation/platform/PartProcess.h"
#include "kvstation/platform/StreamAside.h"

namespace kvstation {
namespace {

constexpr std::chrono::seconds kMoment{1};
constexpr std::chrono::milliseconds kPause{100};
constexpr std::size_t kBar = 20;

// A process that does a part of another one's work leaves the telling to that one.
bool isTerminal() {
    if (isPart())
        return false;
#ifdef _WIN32
    return _isatty(kStandardError) != 0;
#else
    return isatty(kStandardError) != 0;
#endif
}

}  // namespace

std::string progressText(std::size_t done, std::size_t all, std::size_t failed, double seconds) {
    const std::size_t filled = done * kBar / all;
    std::string text = "[" + std::string(filled, '#') + std::string(kBar - filled, '.') + "] " + std::to_string(done) +
                       " of " + std::to_string(all);
    if (failed > 0)
        text += ", " + std::to_string(failed) + (failed == 1 ? " error" : " errors");
    const double left = seconds / static_cast<double>(done) * static_cast<double>(all - done);
    return text + ", " + std::to_string(std::lround(left)) + " s left";
}

bool Progress::isTime() const {
    const Clock::time_point now = Clock::now();
    return now - m_begin >= kMoment && now - m_shown >= kPause && isTerminal();
}

void Progress::show(const std::string& text) const {
    std::fprintf(stderr, "\r%s: %s\x1b[K", m_what.c_str(), text.c_str());
    std::fflush(stderr);
    m_shown = Clock::now();
    m_isShown = true;
}

void Progress::tell(double done) const {
    if (isTime())
        show(std::to_string(static_cast<int>(done * 100)) + " %");
}

void Progress::tell(std::size_t done, std::size_t all, std::size_t failed) const {
    if (isTime())
        show(progressText(done, all, failed, std::chrono::duration<double>(Clock::now() - m_begin).count()));
}

void Progress::clear() const {
    if (m_isShown)
        std::fprintf(stderr, "\r\x1b[K");
    m_isShown = false;
}

Progress::~Progress() {
    clear();
}

}  // namespace kvstation
