// Places that differ by the names in a list alone, such as the same value of each of a thousand network cards. The
// module asks them all alike, so that some of them tell what it does with any.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>

#include "kvstation/calls/Place.h"

namespace kvstation {

// So many of each are experimented with.
inline constexpr std::size_t kMostTried = 16;

class AlikePlaces {
  public:
    // Of a place that an enumeration told.
    void addListed(const Place& place) { m_listed.insert(place.id()); }

    // How many like it were counted before, of all that were told to be listed.
    std::size_t count(const Place& place);

  private:
    std::set<std::string> m_listed;
    std::map<std::string, std::size_t> m_counts;
};

}  // namespace kvstation
