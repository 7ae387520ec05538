#include "kvstation/rows/StationRow.h"

#include <numeric>

namespace kvstation {

const std::array<AboutColumn, kAboutColumns> kAboutRow = {{
    {"name", false},
    {"source", false},
    {"codePage", true},
    {"tool", false},
    {"collectedAt", false},
    {"collectedByLibrary", false},
    {"collectedByTool", false},
}};

FieldList allFields() {
    FieldList list(fields().size());
    std::iota(list.begin(), list.end(), std::size_t{0});
    return list;
}

std::string_view rowTool() {
    return KVSTATION_VERSION;
}

std::array<std::optional<std::string>, kAboutColumns> aboutRow(const StationRow& row) {
    const std::optional<simwin::Collected>& collected = row.report.collected;
    const auto known = [&](std::string simwin::Collected::*member) {
        return collected && !((*collected).*member).empty() ? std::optional((*collected).*member) : std::nullopt;
    };
    return {row.name,
            row.source,
            std::to_string(row.codePage),
            std::string(rowTool()),
            known(&simwin::Collected::at),
            known(&simwin::Collected::library),
            known(&simwin::Collected::tool)};
}

}  // namespace kvstation
