// Why a field of the record holds what it holds: its sources in their order, what each gave, which was taken.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/Sources.h"
#include "kvstation/WatchedRun.h"

namespace kvstation {

// What a source told in one run.
struct Finding {
    enum class State {
        NotAsked,
        Nothing,  // asked, and it had nothing; `lines` tell how
        Gave,
    };
    Source source;
    State state = State::NotAsked;
    std::vector<std::string> lines{};  // what it gave, each answer of its own
    bool isTaken = false;
};

std::vector<Finding> explain(std::string_view field, const WatchedRun& run);

// For people.
std::string explanationText(std::string_view field, const WatchedRun& run, bool colours);

}  // namespace kvstation
