// Where the module runs for the tool's verbs: natively the module that is part of the tool, on Windows the real library
// with its imports redirected.
#pragma once

#include <memory>
#include <string>

#include "kvstation/record/Record.h"
#include "simwin/machine/Machine.h"

namespace kvstation {

// Throws Failure, with file, line and what is wrong when the folder describes no station. Puts the station's ANSI code
// page in force: what is told from now on is told of it.
simwin::Station readStationFolder(const std::string& folder);

// The module, ready to collect again and again. What it prints meanwhile is not to be seen.
class Collector {
  public:
    Collector();
    // By the library in that file. Needs Windows and throws Failure elsewhere.
    explicit Collector(const std::string& library);
    Collector(const Collector&) = delete;
    Collector& operator=(const Collector&) = delete;
    ~Collector();

    // One collection whose calls the machine answers.
    RecordBytes collect(simwin::Machine& machine) const;

  private:
    struct Loaded;
    std::unique_ptr<Loaded> m_loaded;
};

// The version of the library that collects, such as "1.2.0.0"; empty where it tells none.
std::string libraryVersion();

// One collection whose calls the machine answers.
RecordBytes collectOn(simwin::Machine& machine);

// What looking at this computer throws elsewhere, as a Failure.
inline constexpr const char* kNeedsWindows =
    "looking at this computer needs Windows; trace, explain and simulate take a described station here";

// One collection on this computer, whose calls the observer is told. Needs Windows.
RecordBytes collectHereObserved(simwin::CallObserver& observer);

}  // namespace kvstation
