// Where a member of station.json stands, by the path that people are told of it.
#pragma once

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace simwin {

// What stands in a member's path where any name may: "network.hosts.NAME.name".
using NamesInPaths = std::map<std::string, std::string, std::less<>>;

inline nlohmann::json::json_pointer placeOf(std::string_view path, const NamesInPaths& names) {
    nlohmann::json::json_pointer place;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('.'), path.size());
        const std::string name(path.substr(0, end));
        const auto found = names.find(name);
        place.push_back(found != names.end() ? found->second : name);
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return place;
}

}  // namespace simwin
