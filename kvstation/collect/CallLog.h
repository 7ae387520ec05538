// The platform calls of one collection, each with the time that it took.
#pragma once

#include <chrono>
#include <vector>

#include "simwin/machine/CallObserver.h"

namespace kvstation {

struct TimedCall {
    simwin::ObservedCall call;
    std::chrono::nanoseconds duration{};
};

class CallLog : public simwin::CallObserver {
  public:
    void begins(const simwin::ObservedCall&) override { m_begin = std::chrono::steady_clock::now(); }
    void ends(const simwin::ObservedCall& call) override {
        m_calls.push_back({call, std::chrono::steady_clock::now() - m_begin});
    }

    const std::vector<TimedCall>& calls() const { return m_calls; }

  private:
    std::vector<TimedCall> m_calls;
    std::chrono::steady_clock::time_point m_begin;
};

}  // namespace kvstation
