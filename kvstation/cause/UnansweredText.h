// Questions of a run that a station cannot answer, because nobody asked them when it was written down.
#pragma once

#include <string>
#include <vector>

#include "kvstation/experiments/ModuleRun.h"
#include "kvstation/experiments/World.h"

namespace kvstation {

// True when nobody knows what is at the place: it is not described, listed as unknown, and not known to be absent.
bool isUnknown(const World& world, const Place& place);

// For people: the questions, a line each; empty when there are none.
std::string unansweredText(const World& world, const std::vector<AskedCall>& calls);

}  // namespace kvstation
