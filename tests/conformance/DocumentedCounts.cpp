#include "tests/conformance/DocumentedCounts.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace conformance {
namespace {

constexpr std::size_t kFunctionColumn = 0;
constexpr std::size_t kSimulatedColumn = 1;
constexpr std::size_t kWineColumn = 2;

struct Row {
    std::string function;
    std::vector<std::string> cells;
};

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells;
    for (std::size_t begin = 1, end = 0; (end = line.find('|', begin)) != std::string::npos; begin = end + 1)
        cells.push_back(trimmed(line.substr(begin, end - begin)));
    return cells;
}

// By the C library alone: C++'s streams would be half of the program.
std::vector<std::string> linesOf(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr)
        throw std::runtime_error(path + ": cannot be read");
    std::vector<std::string> lines(1);
    for (int character = 0; (character = std::fgetc(file.get())) != EOF;) {
        if (character == '\n')
            lines.emplace_back();
        else if (character != '\r')
            lines.back().push_back(static_cast<char>(character));
    }
    return lines;
}

// Rows of a table with three columns, the first of which is a name in backquotes.
std::vector<Row> readRows(const std::string& path) {
    std::vector<Row> rows;
    bool isInTable = false;
    for (const std::string& line : linesOf(path)) {
        isInTable = line.starts_with("| Function | simwin |") || (isInTable && line.starts_with("|"));
        if (!isInTable || !line.starts_with("| `"))
            continue;
        const std::vector<std::string> cells = cellsOf(line);
        if (cells.size() > kWineColumn)
            rows.push_back({cells[kFunctionColumn].substr(1, cells[kFunctionColumn].size() - 2), cells});
    }
    return rows;
}

std::string cellOf(const FunctionCounts& counts) {
    std::string cell = std::to_string(counts.held);
    if (counts.held != counts.asserted)
        cell += " of " + std::to_string(counts.asserted);
    return counts.skipped != 0 ? cell + ", " + std::to_string(counts.skipped) + " skipped" : cell;
}

// More is skipped on this computer than on the one that the document tells of.
bool lacksSomething(const FunctionCounts& counts, const std::string& told) {
    return counts.skipped != 0 && told.find(" " + std::to_string(counts.skipped) + " skipped") == std::string::npos;
}

}  // namespace

std::vector<std::string> differencesFromDocument(const Report& report, const std::string& path) {
    const std::size_t column = report.platform() == Platform::Simulated ? kSimulatedColumn : kWineColumn;
    std::vector<std::string> lines;
    std::vector<Row> rows = readRows(path);
    for (const FunctionCounts& counts : report.counts()) {
        const auto row =
            std::find_if(rows.begin(), rows.end(), [&](const Row& one) { return one.function == counts.function; });
        const std::string told = row != rows.end() ? row->cells[column] : "nothing";
        if (told != cellOf(counts) && !(row != rows.end() && lacksSomething(counts, told)))
            lines.push_back(counts.function + ": the run gave " + cellOf(counts) + ", the document tells " + told);
        if (row != rows.end())
            rows.erase(row);
    }
    for (const Row& row : rows)
        lines.push_back(row.function + ": the document tells of it, the run did not");
    return lines;
}

}  // namespace conformance
