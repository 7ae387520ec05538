#include "kvstation/rows/RowJson.h"

#include <nlohmann/json.hpp>

#include "kvstation/platform/Errors.h"
#include "kvstation/report/JsonView.h"
#include "simwin/station/StationMembers.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using Json = nlohmann::ordered_json;

// Ends the reading as soon as the object's member "name" is known.
class NameFinder : public nlohmann::json_sax<Json> {
  public:
    std::optional<std::string> take() { return std::move(m_name); }

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t& value) override {
        if (m_isName)
            m_name = value;
        return !m_isName;
    }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override { return ++m_depth <= kDeepest; }
    bool key(string_t& name) override {
        m_isName = m_depth == 1 && name == "name";
        return true;
    }
    bool end_object() override { return --m_depth > 0; }
    bool start_array(std::size_t) override { return m_depth > 0 && ++m_depth <= kDeepest; }
    bool end_array() override { return --m_depth > 0; }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }

  private:
    static constexpr int kDeepest = 8;

    std::optional<std::string> m_name;
    int m_depth = 0;
    bool m_isName = false;
};

Json parseRow(std::string_view line, const std::string& where) {
    Json row = Json::parse(line, nullptr, false);
    if (!row.is_object() || !row.contains("fields") || !row["fields"].is_object())
        throw Failure(where + ": this is no row of a station");
    return row;
}

unsigned codePageOf(const Json& row, const std::string& where) {
    const auto found = row.find("codePage");
    if (found == row.end() || !found->is_number_unsigned() || found->get<std::uint64_t>() > simwin::kUtf8CodePage ||
        !simwin::isKnownCodePage(found->get<unsigned>()))
        throw Failure(where + ": codePage is none of the known code pages: " + simwin::listOfCodePages());
    return found->get<unsigned>();
}

}  // namespace

// A text takes the room of the one before: to make each anew is a tenth of the work.
void setValue(Json& value, const Record& record, std::size_t field) {
    if (value.is_string() && tellsAll(record, field))
        value.get_ref<std::string&>() = record[field].text;
    else
        value = valueJson(record, field);
}

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
        setValue(*m_template->values[i], row.report.record, m_template->fields[i]);
    return printedLine(object);
}

std::optional<std::string> nameInRow(std::string_view line) {
    NameFinder finder;
    Json::sax_parse(line, &finder);
    return finder.take();
}

Record recordInRow(std::string_view line, const std::string& where) {
    const Json row = parseRow(line, where);
    const simwin::CodePageScope scope(codePageOf(row, where));
    return recordFromFields(row["fields"], where);
}

}  // namespace kvstation
