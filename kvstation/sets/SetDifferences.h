// What differs between two sets of records, paired by their names.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kvstation/record/Record.h"

namespace kvstation {

// A field of one station, before and after.
struct FieldChange {
    std::string name;  // the station's
    std::string left;  // as jsonView has them, in JSON
    std::string right;
};

struct SetDifferences {
    std::string left;  // what the sides are, for people
    std::string right;
    std::vector<std::string> went{};  // names that are on the left alone
    std::vector<std::string> came{};
    std::size_t compared = 0;
    std::size_t differing = 0;
    std::vector<std::vector<FieldChange>> fields{kvstation::fields().size()};  // in the order of fields()

    bool isEmpty() const { return went.empty() && came.empty() && differing == 0; }
};

std::string differencesText(const SetDifferences& differences);
std::string differencesJson(const SetDifferences& differences);
std::string differencesPage(const SetDifferences& differences);

}  // namespace kvstation
