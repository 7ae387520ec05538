// The platform calls of one collection, each with the step that it belongs to.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "simwin/CallObserver.h"

namespace kvstation {

struct StepCall {
    std::string_view step;  // empty before the first
    simwin::ObservedCall call;
    std::chrono::nanoseconds duration{};
};

class CallLog : public simwin::CallObserver {
  public:
    void begins(const simwin::ObservedCall& call) override;
    void ends(const simwin::ObservedCall& call) override;

    const std::vector<StepCall>& calls() const { return m_calls; }
    // The step of the last call.
    std::string_view step() const { return m_step; }

  private:
    void pullLead(std::string_view name);

    std::vector<StepCall> m_calls;
    std::string_view m_step;
    std::chrono::steady_clock::time_point m_begin;
};

}  // namespace kvstation
