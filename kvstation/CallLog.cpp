#include "kvstation/CallLog.h"

#include "kvstation/Steps.h"

namespace kvstation {

void CallLog::begins(const simwin::ObservedCall& call) {
    if (const StepMark* mark = findMark(m_step, call.name, call.arguments)) {
        m_step = mark->step;
        pullLead(mark->lead);
    }
    m_begin = std::chrono::steady_clock::now();
}

void CallLog::ends(const simwin::ObservedCall& call) {
    m_calls.push_back({m_step, call, std::chrono::steady_clock::now() - m_begin});
}

// A step may begin with a question that many steps begin with: which one it was for is told by what comes next.
void CallLog::pullLead(std::string_view name) {
    for (auto call = m_calls.rbegin(); call != m_calls.rend() && call->call.name == name; ++call)
        call->step = m_step;
}

}  // namespace kvstation
