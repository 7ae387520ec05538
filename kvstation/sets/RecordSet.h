// A set of records whose names are known: a folder of stations or records, a file of rows, an SQLite file.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kvstation/record/Record.h"
#include "kvstation/sets/Sources.h"

namespace kvstation {

class RecordSet {
  public:
    RecordSet() = default;
    RecordSet(const RecordSet&) = delete;
    RecordSet& operator=(const RecordSet&) = delete;
    virtual ~RecordSet() = default;

    // Sorted, each once.
    const std::vector<std::string>& names() const { return m_names; }
    // What is left out, in one line each that tells where and why.
    const std::vector<std::string>& wrong() const { return m_wrong; }

    // Of one of the names. Throws Failure.
    virtual Record record(const std::string& name) = 0;

  protected:
    std::vector<std::string> m_names;
    std::vector<std::string> m_wrong;
};

// How the sources of a folder become records.
struct SourceReading {
    std::function<Record(const Source&)> station;
    std::function<Record(const Source&)> record;
};

// True for a folder that is no station itself, and for a file of rows.
bool isRecordSet(const std::string& path);

// Throws Failure.
std::unique_ptr<RecordSet> openRecordSet(const std::string& path, const SourceReading& reading);

// The described stations at these places alone.
std::unique_ptr<RecordSet> stationSet(const Places& places, const std::function<Record(const Source&)>& record);

}  // namespace kvstation
