// One station's record among many.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/report/Report.h"

namespace kvstation {

struct StationRow {
    std::string name;
    std::string source;  // the path that it came from
    unsigned codePage;   // ANSI code page of its texts
    Report report;
};

// The version of the tool that makes rows now.
std::string_view rowTool();

// Indexes into fields().
using FieldList = std::vector<std::size_t>;

FieldList allFields();

// What a row tells beside its fields, as columns of tables.
inline constexpr std::size_t kAboutColumns = 7;
struct AboutColumn {
    std::string_view name;
    bool isNumber;
};
extern const std::array<AboutColumn, kAboutColumns> kAboutRow;
// Nothing where nobody knows it.
std::array<std::optional<std::string>, kAboutColumns> aboutRow(const StationRow& row);

}  // namespace kvstation
