// What a station is called for each number of KVStationType: written by hand, and not out of the module.
#pragma once

#include <cstddef>
#include <iterator>
#include <vector>

namespace kvtest {

// In the order of their numbers.
enum class StationName { Client, Dns, IPAddress, MACAddress };

// What is tried for each number, in this order.
inline const std::vector<std::vector<StationName>> kStationTypes = {
    {StationName::Client},
    {StationName::Dns, StationName::IPAddress, StationName::MACAddress, StationName::Client},
    {StationName::IPAddress, StationName::MACAddress, StationName::Client},
    {StationName::MACAddress, StationName::IPAddress, StationName::Client},
};

// Of any number: those that are not listed count as 0.
inline const std::vector<StationName>& namesTried(int type) {
    const bool isListed = type >= 0 && type < std::ssize(kStationTypes);
    return kStationTypes[isListed ? static_cast<std::size_t>(type) : 0];
}

}  // namespace kvtest
