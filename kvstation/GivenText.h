// What a call gave, for people.
#pragma once

#include <string>

#include "simwin/CallObserver.h"

namespace kvstation {

// A variable's, value's or name's text in quotes, a structure's members of interest; else the whole answer.
std::string givenBy(const simwin::ObservedCall& call);

// It gives a structure, of which the call's answer tells nothing.
bool isStructure(const simwin::ObservedCall& call);

}  // namespace kvstation
