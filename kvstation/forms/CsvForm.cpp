// Rows as CSV (RFC 4180) in UTF-8: a header, then a line a row.
#include "kvstation/forms/PrintedForm.h"
#include "simwin/text/Utf8.h"

namespace kvstation {
namespace {

void appendCell(std::string& line, std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        line.append(text) += ',';
        return;
    }
    line += '"';
    for (const char character : text)
        line.append(character == '"' ? 2 : 1, character);
    line += "\",";
}

// In the place of the comma behind the last cell.
std::string endLine(std::string line) {
    line.pop_back();
    return line += "\r\n";
}

std::string headerOf(const FieldList& list) {
    std::string line;
    for (const AboutColumn& column : kAboutRow)
        appendCell(line, column.name);
    for (const std::size_t field : list)
        appendCell(line, fields()[field].name);
    return endLine(std::move(line));
}

// A byte that is no character becomes the replacement character, and what nobody knows an empty cell.
std::string lineOf(const StationRow& row, const FieldList& list) {
    std::string line;
    for (const std::optional<std::string>& text : aboutRow(row))
        appendCell(line, simwin::repairedUtf8(text.value_or(std::string())));
    for (const std::size_t field : list)
        appendCell(line, simwin::repairedUtf8(row.report.record.textOf(field)));
    return endLine(std::move(line));
}

std::unique_ptr<RowForm> makeCsv(const FieldList& fields, const std::string&) {
    return std::make_unique<PrintedForm>([fields](const StationRow& row) { return lineOf(row, fields); },
                                         headerOf(fields));
}

}  // namespace

const RowFormKind kCsvForm = {"--csv", "Print a table as comma-separated values (RFC 4180, in UTF-8), with a header",
                              makeCsv};

}  // namespace kvstation
