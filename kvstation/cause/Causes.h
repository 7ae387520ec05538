// Why a field holds what it holds, as experiments have shown.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kvstation/calls/Answer.h"
#include "kvstation/calls/CallError.h"
#include "kvstation/calls/Place.h"
#include "kvstation/cause/WholeText.h"
#include "kvstation/experiments/Experiments.h"

namespace kvstation {

struct Cause {
    Role role;
    std::string call;              // its name
    std::string question;          // the call with its arguments
    std::string words;             // what it asks for
    std::optional<Answer> answer;  // none: it failed
    std::optional<CallError> error;
    Place place;
    // Nobody asked for it when the station was written down, so that the failure is no answer of the machine.
    bool isUnknown = false;
    bool canFail = false;  // on Windows
};

struct NextValue {
    std::string value;
    std::vector<Cause> causes;  // what gives it; none: it is the module's own text
};

struct FieldCauses {
    std::size_t field;
    std::string value;             // in UTF-8, a number in decimal
    std::optional<WholeText> cut;  // the whole text, of which the field holds the beginning
    std::vector<Cause> causes;     // givers first, in the order in which they stand in the value, then what decides
    std::vector<std::string> unknown{};  // of no causes: what nobody knows and would be one, in UTF-8
    // Of no causes, on a station of which things are unknown: no answer changes the field by itself, but nobody can
    // tell what several of them would do together.
    bool isOpen = false;
    std::vector<NextValue> next{};  // what comes in its place when what gives it fails, and so on
};

// What the experiments found of one field, without what would come next.
FieldCauses causesOf(World& world, const Collector& collector, const Experiments& experiments, std::size_t field);

// Says of those without causes what is unknown, and whether that may be all.
void addUnknownSources(const simwin::Station& station, const Collector& collector, std::vector<FieldCauses>& all);

// Of every field, with a sign of life on a terminal.
std::vector<FieldCauses> allCauses(const simwin::Station& station);

// What alone gives the field or a part of it, sought among the answers that have a text in common with it.
std::vector<Cause> giversOf(World& world, const Collector& collector, std::size_t field);

// The values that would come in the field's place, one behind the other.
std::vector<NextValue> nextValues(const simwin::Station& station, const Collector& collector,
                                  const FieldCauses& causes);

}  // namespace kvstation
