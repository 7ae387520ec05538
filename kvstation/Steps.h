// The steps of a collection, told from the platform calls that the module makes: it has no other sign of them.
#pragma once

#include <span>
#include <string_view>

namespace kvstation {

// A step begins with this call, where its arguments hold this text.
struct StepMark {
    std::string_view step;
    std::string_view call;
    std::string_view argument;  // a text that is asked for, or the arguments as a whole; empty: any
    std::string_view after;     // the step that must be the current one; empty: any
    std::string_view lead;      // calls of this name right before the mark belong to the step too; empty: none
};

std::span<const StepMark> stepMarks();

// The mark that a call is when it comes during a step, or null. `arguments` as an observer of the calls is told them.
const StepMark* findMark(std::string_view step, std::string_view call, std::string_view arguments);

}  // namespace kvstation
