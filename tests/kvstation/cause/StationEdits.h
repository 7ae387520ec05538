// Other stations than a given one, each with one thing changed in its files: taken away, another text of its form,
// another number. Made from the files' content alone, without the tool's experiments.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "simwin/machine/CallObserver.h"
#include "simwin/station/Station.h"
#include "tests/kvstation/cause/Random.h"

namespace kvtest {

struct StationEdit {
    std::string what;
    simwin::MemberPath member;  // of station.json; empty: of the registry
    // None when no station can hold it.
    std::function<std::optional<simwin::Station>()> make;
};

// Of every member of station.json; of every key and value of the registry that the calls ask for; and what they ask for
// and is not there is added. `station` must outlive them.
std::vector<StationEdit> editsOf(const simwin::Station& station, const std::vector<simwin::ObservedCall>& calls,
                                 Random& random);

// The station as its two files tell it.
simwin::Station writtenAndRead(const simwin::Station& station);

}  // namespace kvtest
