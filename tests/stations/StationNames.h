// The described stations by their names.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace kvtest {

// Sorted.
inline std::vector<std::string> stationNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(KV_STATIONS)) {
        if (entry.is_directory())
            names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

inline std::filesystem::path folderOf(const std::string& station) {
    return std::filesystem::path(KV_STATIONS) / station;
}

// Names the test of a station, which may have no hyphens.
struct NameOfStationTest {
    template <class Test>
    std::string operator()(const Test& test) const {
        std::string name = test.param;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    }
};

}  // namespace kvtest
