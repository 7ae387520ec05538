// What the module would ask a station if something about it were different.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "kvstation/calls/Place.h"
#include "kvstation/experiments/ModuleRun.h"
#include "simwin/station/Station.h"

namespace kvstation {

// Places that were asked for, each once. Names are as they were asked for first.
class AskedPlaces {
  public:
    struct Asked {
        Place place;
        std::string_view words;  // what was asked for
    };

    void add(const std::vector<AskedCall>& calls);
    // Gives the places that are new.
    std::vector<Place> addNew(const std::vector<simwin::ObservedCall>& calls);
    // True when one of them is new.
    bool add(const AskedPlaces& other);

    bool holds(const Place& place) const { return m_places.contains(place.id()); }
    // In the order of their letters.
    const std::map<std::string, Asked>& all() const { return m_places; }

  private:
    std::optional<Place> add(const simwin::ObservedCall& call);

    std::map<std::string, Asked> m_places;      // by id
    std::unordered_set<std::uint64_t> m_calls;  // that were looked at, by the hash of all that makes them
};

// What a run on the station asks.
AskedPlaces askedOnce(const simwin::Station& station, const Collector& collector);

// What runs on the station ask, and on the same with every other version of Windows.
AskedPlaces askedByVersions(const simwin::Station& station, const Collector& collector);

// Told the places that a run asked for first, to write into `world`, the station that is experimented with, what is
// known of them. True when there was anything: the run is made again.
using FillIn = std::function<bool(const std::vector<Place>& places, simwin::Station& world)>;

// What a run on the station asks, and what runs ask on stations that differ in one thing: a setting, a version of
// Windows, a session, an answer that fails or comes. `station` may get more keys and values with each filling.
AskedPlaces askedInBranches(const simwin::Station& station, const Collector& collector, const FillIn& fillIn = {});

}  // namespace kvstation
