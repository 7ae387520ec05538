// A sign of life on a terminal while something takes longer than a moment.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace kvstation {

// "[#####...............] 250 of 1000, 3 errors, 12 s left", after so many seconds; at least one is done.
std::string progressText(std::size_t done, std::size_t all, std::size_t failed, double seconds);

class Progress {
  public:
    explicit Progress(std::string what) : m_what(std::move(what)) {}
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    // Clears the line.
    ~Progress();

    // How far it is, from 0 to 1. Shown on standard error where that is a terminal, after the first second, at most ten
    // times a second.
    void tell(double done) const;
    // The same of things that are counted, `failed` of the `done` ones among them, with the time that the others will
    // take.
    void tell(std::size_t done, std::size_t all, std::size_t failed) const;
    // Takes the line away until it is told of again.
    void clear() const;

  private:
    using Clock = std::chrono::steady_clock;

    bool isTime() const;
    void show(const std::string& text) const;

    std::string m_what;
    Clock::time_point m_begin = Clock::now();
    mutable Clock::time_point m_shown{};
    mutable bool m_isShown = false;
};

}  // namespace kvstation
