// Where each field of the record comes from: its sources in the order in which the module turns to them.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace kvstation {

enum class Role {
    Steers,     // decides which source is asked, or how its answer is used
    Takes,      // gives the value; a later one that gives one too replaces it
    Adds,       // gives a part of the value
    Otherwise,  // the value when no source gives one
};

enum class Asked {
    Variable,  // an environment variable
    Value,     // a registry value: the key ends in `what`, the value is `item`
    SubKeys,   // the names of a key's sub-keys
    Values,    // the names of a key's values
    Call,      // any call by its name; `item` is text among its arguments
    CallText,  // a call's text, also where the call says that it failed
    Field,     // another field of the record
    Nothing,   // a fixed text
};

struct Source {
    std::string_view field;
    Role role;
    Asked asked;
    std::string_view step;  // empty: any
    std::string_view what;
    std::string_view item;
    std::string_view meaning;
};

std::vector<Source> sourcesOf(std::string_view field);

// Why a field got its Otherwise: the first of its reasons that holds is told.
struct Reason {
    std::string_view field;
    std::string_view step;
    std::string_view call;      // was made in that step, or any
    std::string_view argument;  // text among its arguments; empty: any
    enum class State { Failed, Made, NotMade } state;
    std::string_view text;
};

std::span<const Reason> reasons();

}  // namespace kvstation
