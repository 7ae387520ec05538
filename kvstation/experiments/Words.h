// The module's own words in the place of answers.
//
// A text that nobody compares with stays without an effect whatever it is, but of one that is compared no other text
// tells it than the right word. So each word has to stand once at each place; many places take one at a time.
#pragma once

#include <set>
#include <span>
#include <string>
#include <vector>

#include "kvstation/experiments/ModuleRun.h"
#include "kvstation/experiments/World.h"

namespace kvstation {

struct PlacedWord {
    const Place* place;
    const std::string* word;
};

// Texts that calls ask for by name, such as those of variables and values: they are no answers.
using AskedNames = std::set<std::string, std::less<>>;
void addNames(AskedNames& names, const std::vector<AskedCall>& calls);

// The words to try: those of the module that nothing asks for by name, several in one text for those that are searched
// for, and the digits.
std::vector<std::string> wordsFor(const AskedNames& asked);

// True for a place that can hold a text, or the name of something listed. `samples` are those of its call's row.
bool takesWord(const World& world, const Place& place, std::string_view samples);

// All these words at their places at once.
std::vector<Change> withWords(World& world, std::span<const PlacedWord> words);

}  // namespace kvstation
