#include "kvstation/sets/RowJson.h"

#include <nlohmann/json.hpp>

#include "kvstation/JsonView.h"
#include "simwin/CollectedJson.h"

namespace kvstation {
namespace {

using Json = nlohmann::ordered_json;

}  // namespace

// The object of a line, whose members stay where they are from line to line: half of the work would be making them.
struct RowJsonWriter::Template {
    explicit Template(FieldList list) : fields(std::move(list)) {
        for (const char* member : {"name", "source", "codePage", "tool", "collected", "fields"})
            object[member] = nullptr;
        Json& all = object["fields"] = Json::object();
        for (const std::size_t field : fields)
            all[std::string(kvstation::fields()[field].name)] = nullptr;
        for (Json& value : all)
            values.push_back(&value);
    }

    FieldList fields;
    Json object;
    std::vector<Json*> values;  // in the order of `fields`
};

RowJsonWriter::RowJsonWriter(FieldList fields) : m_template(std::make_unique<Template>(std::move(fields))) {}
RowJsonWriter::~RowJsonWriter() = default;

std::string RowJsonWriter::line(const StationRow& row) {
    Json& object = m_template->object;
    object["name"] = row.name;
    object["source"] = row.source;
    object["codePage"] = row.codePage;
    object["tool"] = rowTool();
    object["collected"] = row.report.collected ? simwin::collectedJson(*row.report.collected) : Json();
    for (std::size_t i = 0; i < m_template->values.size(); ++i)
        *m_template->values[i] = valueJson(row.report.record, m_template->fields[i]);
    return printedLine(object);
}

}  // namespace kvstation
