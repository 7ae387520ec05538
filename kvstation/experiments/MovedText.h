// Whether a value moved with the text or number that was put in the place of an answer.
#pragma once

#include <string_view>

#include "kvstation/experiments/Alternatives.h"
#include "kvstation/experiments/Questions.h"

namespace kvstation {

// `before` and `after` are a text value with the answer's own text and with the other one. It moved when the two differ
// by nothing but parts of these texts, whatever their letter case and what stands between letters and digits.
Role roleOfText(std::string_view before, std::string_view after, const Replacement& replacement);

// The same of a number, which is the answer's text at its beginning.
Role roleOfNumber(std::string_view before, std::string_view after, const Replacement& replacement);

// Letters and digits alone, in small letters.
std::string plain(std::string_view text);

}  // namespace kvstation
