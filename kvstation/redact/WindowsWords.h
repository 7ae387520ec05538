// Words that tell nobody's name, since they stand on every computer.
#pragma once

#include <set>

#include "kvstation/redact/PageText.h"
#include "kvstation/redact/TextPlace.h"

namespace kvstation {

// What the module and other programs ask for by name and what the module compares with, in lower case. Without them a
// station would answer differently, so a name made of them stays where no form shows that it is one.
std::set<PageText> askedWords();

// A word of Windows, of the programs and makers of devices that stand in its registry, or of this tool, in any letter
// case: one of askedWords() or one of many others. These may well be somebody's name too, but nobody would know it.
bool isWindowsWord(PageTextView word);

// Whether a word of the text could tell whose it is: a weight of three with a letter that is no word of Windows, or a
// number of five digits that is no part of a version or an address. `word` is a part of `text`, which stands at
// `place`.
bool isTelling(PageTextView text, PageTextView word, TextPlace place);

}  // namespace kvstation
