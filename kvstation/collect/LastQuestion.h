// What a collection did last, for whoever must tell of it while it hangs or has crashed.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>

#include "simwin/machine/CallObserver.h"

namespace kvstation {

// The question and what is asked for: "KVGetDomainName() for the user's domain". One line.
std::string describeQuestion(const simwin::ObservedCall& call);

// UTF-8, terminated.
struct Doing {
    static constexpr std::size_t kLongest = 639;  // in bytes; no question is longer

    bool isQuestion = false;  // else what is done beside asking, such as "loading kvcstat64.dll"
    std::array<char, kLongest + 1> text{};
};

// Written by the thread that collects. Others may read at any time, without a lock and without allocating.
class LastQuestion {
  public:
    void note(const simwin::ObservedCall& question) { note(true, describeQuestion(question)); }
    void noteWork(std::string_view work) { note(false, work); }

    Doing read() const;

  private:
    void note(bool isQuestion, std::string_view text);

    // The last one is that of the count; the other one is written next.
    mutable std::array<Doing, 2> m_notes;  // their parts are loaded and stored as atomics, which takes nothing const
    std::atomic<unsigned> m_count = 0;
};

}  // namespace kvstation
