#include "kvstation/collect/LastQuestion.h"

#include <algorithm>

#include "kvstation/calls/CallRows.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestQuestion = 120;  // in characters

template <class Value>
void storeIn(Value& place, Value value) {
    std::atomic_ref(place).store(value, std::memory_order_relaxed);
}
template <class Value>
Value loadFrom(Value& place) {
    return std::atomic_ref(place).load(std::memory_order_relaxed);
}

}  // namespace

std::string describeQuestion(const simwin::ObservedCall& call) {
    const std::string question = call.name + "(" + shortened(visible(call.arguments), kLongestQuestion) + ")";
    const CallRow* row = findQuestion(call.name);
    return row != nullptr ? question + " for " + std::string(row->asks.words) : question;
}

// Who reads a byte of this note knows that the one before is the last no more.
void LastQuestion::note(bool isQuestion, std::string_view text) {
    const unsigned next = m_count + 1;
    std::atomic_thread_fence(std::memory_order_release);
    Doing& doing = m_notes[next % m_notes.size()];
    const std::size_t length = std::min(text.size(), Doing::kLongest);
    storeIn(doing.isQuestion, isQuestion);
    for (std::size_t i = 0; i < length; ++i)
        storeIn(doing.text[i], text[i]);
    storeIn(doing.text[length], '\0');
    m_count = next;
}

// What was copied while it was the last one is whole.
Doing LastQuestion::read() const {
    for (;;) {
        const unsigned count = m_count;
        Doing& last = m_notes[count % m_notes.size()];
        Doing doing{.isQuestion = loadFrom(last.isQuestion)};
        std::ranges::transform(last.text, doing.text.begin(), loadFrom<char>);
        std::atomic_thread_fence(std::memory_order_acquire);
        if (m_count == count)
            return doing;
    }
}

}  // namespace kvstation
