// Other answers that a place of a station can give.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kvstation/experiments/World.h"

namespace kvstation {

// A text, or a number in decimal, and the one in its place: bytes of the ANSI code page.
struct Replacement {
    std::string before;
    std::string after;
};

inline constexpr std::size_t kSeriesLength = 3;

struct Alternative {
    std::vector<Change> changes;                  // made in this order
    std::optional<Replacement> replacement = {};  // of one text or number by another of its form
    // Not 0: one of kSeriesLength alternatives of one number, which have the same series. A value that each of them
    // gives another form is computed from the number.
    int series = 0;
    bool isAbsence = false;  // nothing is there
    bool isNumber = false;   // the replacement is of a number: what moves with it is computed from it
};

// What else can stand at the place. `samples` are those of its call's row.
std::vector<Alternative> alternativesAt(World& world, const Place& place, std::string_view samples);

// For many listed names of one key at once: none of them, and each another of the same form.
std::vector<Alternative> alternativesOf(World& world, std::span<const Place> listed);

}  // namespace kvstation
