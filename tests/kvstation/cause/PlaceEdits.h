// Other contents of one place of a station's two files, made from what the files say and without the tool's
// experiments.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "kvstation/calls/Place.h"
#include "simwin/station/Station.h"

namespace kvtest {

class StationFiles {
  public:
    // What stands at the place in `station`: a text, or a number where `isNumber`; empty for what is no such thing.
    struct Edited {
        const simwin::Station& station;
        std::string text;
        bool isNumber = false;
    };
    // False ends the edits.
    using Visit = std::function<bool(const Edited& edited)>;

    explicit StationFiles(const std::string& folder);

    const simwin::Station& station() const { return m_station; }
    // The station with something else, or nothing, at that place and nowhere else, one content behind the other.
    void editAt(const kvstation::Place& place, const Visit& visit) const;

  private:
    simwin::Station m_station;
    nlohmann::ordered_json m_json;
};

}  // namespace kvtest
