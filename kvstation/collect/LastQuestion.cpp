#include "kvstation/collect/LastQuestion.h"

#include "kvstation/calls/CallRows.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestQuestion = 120;  // in characters

}  // namespace

std::string describeQuestion(const simwin::ObservedCall& call) {
    const std::string question = call.name + "(" + shortened(visible(call.arguments), kLongestQuestion) + ")";
    const CallRow* row = findQuestion(call.name);
    return row != nullptr ? question + " for " + std::string(row->asks.words) : question;
}

void LastQuestion::note(bool isQuestion, std::string_view text) {
    const unsigned next = m_count + 1;
    Doing& doing = m_notes[next % m_notes.size()];
    doing.isQuestion = isQuestion;
    doing.text[text.copy(doing.text.data(), Doing::kLongest)] = '\0';
    m_count = next;
}

// What was copied while it was the last one is whole.
Doing LastQuestion::read() const {
    for (;;) {
        const unsigned count = m_count;
        const Doing doing = m_notes[count % m_notes.size()];
        std::atomic_thread_fence(std::memory_order_acquire);
        if (m_count == count)
            return doing;
    }
}

}  // namespace kvstation
