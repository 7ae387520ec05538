// The questions of a run: the calls that ask the same, each with the place of its answer.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "kvstation/calls/CallRows.h"
#include "kvstation/experiments/ModuleRun.h"
#include "kvstation/experiments/World.h"

namespace kvstation {

// How an output hangs on an answer, the closest last.
enum class Role {
    Decides,  // with another answer it is another one
    Adds,     // a part of it is the answer's text, or is computed from its number, and moves with it
    Gives,    // the same of it as a whole
};

// What a run gives: the fields of the record by their number, behind them the published variables, and last whether the
// trace lines are the same.
inline constexpr std::size_t kMostOutputs = 128;
inline constexpr std::size_t kTraceOutput = kMostOutputs - 1;
using Outputs = std::bitset<kMostOutputs>;
using Roles = std::map<std::size_t, Role>;

struct Occurrence {
    std::size_t call;  // its number in the run's list
    Roles roles;       // of what hangs on this one
};

struct Question {
    const CallRow* row;
    Place place;
    simwin::ObservedCall call;  // the occurrence that tells most; what it alone did not ask for is the others'
    bool canFail;
    std::vector<Occurrence> occurrences;
    Roles roles;  // of all together
};

// In the order of their first asking.
std::vector<Question> questionsOf(const std::vector<AskedCall>& calls, const World& world);

}  // namespace kvstation
