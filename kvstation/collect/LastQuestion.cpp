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
    Doing& doing = m_last == &m_notes[0] ? m_notes[1] : m_notes[0];
    doing.isQuestion = isQuestion;
    doing.text[text.copy(doing.text.data(), Doing::kLongest)] = '\0';
    m_last = &doing;
}

}  // namespace kvstation
