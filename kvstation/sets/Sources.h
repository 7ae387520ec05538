// What a verb is asked about: stations or records, one by one, folders of them, patterns and lists of all these.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kvstation {

// As the command line names them.
struct Places {
    std::vector<std::string> given;
    std::string list;  // a file with a place in each line, "-" for standard input; empty: none

    bool isEmpty() const { return given.empty() && list.empty(); }
};

enum class SourceKind {
    Stations,  // folders with registry.reg and station.json
    Records,   // files
};

struct Source {
    // Below the folder that was named, with "/", or the last part of what was named by itself, and without the ending
    // of a record's file; the path where another one of the list has that name.
    std::string name;
    std::string path;   // "-": standard input
    std::string wrong;  // why it cannot be read; empty until somebody knows
};

inline constexpr const char* kStandardInput = "-";

// The option for the list. `places` must live as long as the command.
void addPlaces(CLI::App& command, Places& places);
// For a verb that without a place is asked about this computer: the described stations, and the list.
void addStationPlaces(CLI::App& command, Places& places);

bool isStationFolder(const std::string& path);

// A place that is one station or record by itself.
bool isOne(const Places& places);

// In the order of the command line; within a folder by their names. A folder is looked through with those in it, and a
// place that has none gives one source that tells so. Throws Failure where the list cannot be read, and WrongUse where
// standard input is to be two things.
std::vector<Source> sourcesOf(const Places& places, SourceKind kind);

// What there is in a folder, with all folders in it, or what of it cannot be read; it may be nothing.
std::vector<Source> sourcesIn(const std::string& folder, SourceKind kind);

// Those whose name an earlier one has: nobody could tell them apart.
void refuseDoubles(std::vector<Source>& sources);
// What is wrong with one of these.
std::string doubleText(const Source& source, const Source& first);

}  // namespace kvstation
