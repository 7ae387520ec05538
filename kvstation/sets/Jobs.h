// The same work for each of many stations or records, in several processes.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/sets/Sources.h"

namespace CLI {
class App;
}

namespace kvstation {

struct JobOptions {
    unsigned jobs = 0;  // processes; 0: as many as there are processors
};

// `options` must live as long as the command.
void addJobs(CLI::App& command, JobOptions& options);

// What is to be known of a source, as bytes for whoever takes it in. Throws Failure.
using Perform = std::function<std::string(const Source&)>;

struct Work {
    std::string what;  // for people: "simulating"
    Perform perform;   // in any process
    // In this process, in the order of the sources.
    std::function<void(const Source&, std::string_view result)> take;
    bool prints = true;  // `take` writes to standard output: on a terminal that is sign of life enough
};

struct Tally {
    std::size_t done = 0;
    std::size_t failed = 0;
};

// Each source that fails costs one line on standard error, and so does one whose process ends over it.
Tally performAll(const std::vector<Source>& sources, const Work& work, const JobOptions& options);

// The exit status of work of which so much was done.
int statusOf(const Tally& tally);

// What a process that isPart() does in the place of all else. Gives its exit status.
int servePart(const Perform& perform);

// Work whose results are text, to standard output in the order of the sources; gives the exit status.
int printAll(const Places& places, SourceKind kind, const std::string& what, const Perform& perform,
             const JobOptions& options);

}  // namespace kvstation
