#include "kvstation/calls/Answer.h"

#include "kvstation/text/JoinWords.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {

std::string shown(const Answer& answer) {
    const auto shownItem = [&](const std::string& item) {
        return answer.isText ? "\"" + visible(item) + "\"" : visible(item);
    };
    const std::string line = joinWords(answer.items, ", ", shownItem);
    return line.empty() ? answer.isText ? "an empty list" : "there" : line;
}

Answer tellNumber(const simwin::ObservedCall& call) {
    return wordsAnswer(std::to_string(static_cast<std::int64_t>(simwin::numberOf(call.result))));
}

Answer tellLogged(const simwin::ObservedCall& call) {
    return wordsAnswer(call.answer);
}

Answer tellLoggedBehindResult(const simwin::ObservedCall& call) {
    const std::size_t comma = call.answer.find(", ");
    return wordsAnswer(comma != std::string::npos ? call.answer.substr(comma + 2) : call.answer);
}

}  // namespace kvstation
