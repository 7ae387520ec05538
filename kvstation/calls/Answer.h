// What a call answered, for people.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simwin/machine/CallObserver.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

struct Answer {
    // The text, the items of a list, or an address, a number, a structure's members in words; in UTF-8. Empty: nothing.
    std::vector<std::string> items;
    bool isText = false;  // shown in quotes
};

// "net", "TCP/IP"; "there" for an answer of nothing.
std::string shown(const Answer& answer);

// A text in the ANSI code page.
inline Answer textAnswer(std::string_view text) {
    return {{simwin::toUtf8(text)}, true};
}

inline Answer wordsAnswer(std::string words) {
    return {{std::move(words)}, false};
}

// The text that the call put into one of its parameters; nothing where it was asked for the text's size alone.
template <std::size_t Parameter>
Answer tellText(const simwin::ObservedCall& call) {
    const simwin::Fact& told = call.parameters[Parameter];
    return told.index() != 0 ? textAnswer(simwin::textOf(told)) : Answer{};
}

// The result, which is the number that was asked for.
Answer tellNumber(const simwin::ObservedCall& call);

// As the log tells it.
Answer tellLogged(const simwin::ObservedCall& call);
// The same without the result in front.
Answer tellLoggedBehindResult(const simwin::ObservedCall& call);

}  // namespace kvstation
