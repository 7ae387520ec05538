#include "kvstation/report/LayoutTable.h"

#include <nlohmann/json.hpp>
#include <vector>

#include "include/kvcstat.h"
#include "kvstation/record/FieldTable.h"
#include "kvstation/report/JsonView.h"

namespace kvstation {
namespace {

// A field, or a reserved area between two fields.
struct Row {
    std::string name;
    std::size_t offset;
    std::size_t width;
    std::string limit;
    std::string type;
    std::string group;
    std::string meaning;
    std::string source;
};

std::string typeOf(const Field& field) {
    switch (field.type) {
        case FieldType::Text:
            return "char[" + std::to_string(field.width) + "]";
        case FieldType::Number:
            return "int32";
        case FieldType::Unsigned:
            return "uint32";
    }
    return {};
}

Row rowOf(const Field& field, const std::string& source) {
    return {.name = std::string(field.name),
            .offset = field.offset,
            .width = field.width,
            .limit = field.type == FieldType::Text ? std::to_string(field.limit) : "-",
            .type = typeOf(field),
            .group = std::string(field.group),
            .meaning = std::string(field.meaning),
            .source = source};
}

Row reservedRow(std::size_t offset, std::size_t width) {
    return {.name = "reserved" + std::to_string(offset),
            .offset = offset,
            .width = width,
            .limit = "-",
            .type = "char[" + std::to_string(width) + "]",
            .group = "-",
            .meaning = "reserved",
            .source = "-"};
}

std::string sourceOf(const FieldSources& sources, const Field& field) {
    const std::size_t index = findField(field.name);
    return index < sources.size() ? sources[index] : std::string();
}

std::vector<Row> rows(const FieldSources& sources) {
    std::vector<Row> all;
    std::size_t end = 0;
    for (const Field& field : fields()) {
        if (field.offset > end)
            all.push_back(reservedRow(end, field.offset - end));
        all.push_back(rowOf(field, sourceOf(sources, field)));
        end = field.offset + field.width;
    }
    return all;
}

using Cells = std::vector<std::string>;

// The sources last, where somebody looked for them.
Cells cellsOf(const Row& row, bool withSources) {
    Cells cells = {std::to_string(row.offset),
                   hexOffset(row.offset),
                   std::to_string(row.width),
                   row.limit,
                   row.type,
                   row.name,
                   row.group,
                   row.meaning};
    if (withSources)
        cells.push_back(row.source);
    return cells;
}

Cells heading(bool withSources) {
    Cells cells = {"offset", "hex", "width", "limit", "type", "field", "group", "meaning"};
    if (withSources)
        cells.emplace_back("comes from");
    return cells;
}

// Offsets, widths and limits stand on the right.
bool isNumeric(std::size_t column) {
    return column == 0 || column == 2 || column == 3;
}

std::string alignedLine(const Cells& cells, const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string gap(widths[i] - cells[i].size(), ' ');
        line += (i == 0 ? "" : "  ") + (isNumeric(i) ? gap + cells[i] : cells[i] + gap);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

std::string markdownLine(const Cells& cells) {
    std::string line = "|";
    for (const std::string& cell : cells)
        line += " " + cell + " |";
    return line + "\n";
}

std::string introduction() {
    return "# The station record\n"
           "\n"
           "`GetStationData` fills one record, `STATIONDATA` of `include/kvcstat.h`, which says how texts, lists and\n"
           "numbers stand in it. At most its first " +
           std::to_string(KVCSTAT_RECORD_SIZE) +
           " bytes are written.\n"
           "\n"
           "This page is made by `./kv docs`; the table behind it is `include/kvcstat_fields.inc`.\n";
}

constexpr const char* kSourcesNote =
    "\n"
    "Where a field comes from was found by changing every answer on every described station: first what gives its "
    "text\n"
    "or a part of it, then what decides. A name in quotation marks is a registry value; `command`, `.html` and `.ica`\n"
    "are keys whose default value counts; the others are variables and calls. What another setting would bring in is\n"
    "not among them, and the version of Windows stands for what comes with it where no call decides. `kvstation\n"
    "explain` tells it of one station.\n";

}  // namespace

std::string layoutText(const FieldSources& sources) {
    std::vector<Cells> lines{heading(!sources.empty())};
    for (const Row& row : rows(sources))
        lines.push_back(cellsOf(row, !sources.empty()));
    std::vector<std::size_t> widths(lines.front().size());
    for (const Cells& cells : lines)
        for (std::size_t i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], cells[i].size());
    std::string text;
    for (const Cells& cells : lines)
        text += alignedLine(cells, widths);
    return text;
}

std::string layoutJson(const FieldSources& sources) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const Field& field : fields()) {
        nlohmann::ordered_json object;
        const Row row = rowOf(field, sourceOf(sources, field));
        object["name"] = row.name;
        object["offset"] = row.offset;
        object["hex"] = hexOffset(row.offset);
        object["width"] = row.width;
        if (field.type == FieldType::Text)
            object["limit"] = field.limit;
        object["type"] = row.type;
        object["group"] = row.group;
        object["meaning"] = row.meaning;
        if (!sources.empty())
            object["source"] = row.source;
        array.push_back(std::move(object));
    }
    return printed(array);
}

std::string layoutMarkdown(const FieldSources& sources) {
    const bool withSources = !sources.empty();
    std::string text = introduction() + (withSources ? kSourcesNote : "") + "\n";
    text += markdownLine(heading(withSources));
    Cells line{"---:", "---", "---:", "---:", "---", "---", "---", "---"};
    if (withSources)
        line.emplace_back("---");
    text += markdownLine(line);
    for (const Row& row : rows(sources)) {
        Cells cells = cellsOf(row, withSources);
        cells[5] = "`" + cells[5] + "`";
        text += markdownLine(cells);
    }
    return text;
}

}  // namespace kvstation
