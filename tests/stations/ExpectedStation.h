// What must come out of a described station (its expected.json), and the comparison with what did.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "simwin/machine/Machine.h"
#include "simwin/text/CodePage.h"
#include "tests/stations/StationNames.h"

namespace kvtest {

using FieldValue = std::variant<std::int64_t, std::string>;  // texts are bytes of the station's ANSI code page

using Fields = std::vector<std::pair<std::string, FieldValue>>;

struct ExpectedStation {
    unsigned codePage = simwin::kDefaultCodePage;
    Fields record;                              // every field, in the order of offsets
    std::vector<simwin::Variable> environment;  // in the order of their names
    std::vector<simwin::TraceLine> trace;
    std::string standardOutput;
};

// Throws std::runtime_error that names the file, when it is not as docs/stations.md says.
ExpectedStation readExpectedStation(const std::filesystem::path& folder);

// The fields of a record, each text up to its first NUL.
Fields fieldsOf(const std::string& record);

// All bytes of a record with these fields: into one that was cleared a run writes nothing but zeros behind a text, and
// nothing into the reserved areas.
std::string recordBytes(const Fields& fields);

// What one collection on a station gave.
struct CollectedStation {
    std::string record;  // the bytes of the record, which was cleared before
    std::vector<simwin::Variable> environment;
    std::vector<simwin::TraceLine> trace;
    std::string standardOutput;
};

// One line for each difference, naming field, expected and found; empty when all is as it must be.
std::vector<std::string> differences(const ExpectedStation& expected, const CollectedStation& found);

// Names of the fields that hold neither an empty text nor 0.
std::vector<std::string> filledFields(const ExpectedStation& expected);

}  // namespace kvtest
