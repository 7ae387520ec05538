#include "kvstation/forms/RowTable.h"

#include <algorithm>

#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

constexpr std::size_t kMeasuredRows = 1000;
constexpr std::size_t kColumnGap = 2;

}  // namespace

std::vector<std::string> tableCells(const StationRow& row, const FieldList& list) {
    std::vector<std::string> cells = {visible(row.name)};
    for (const std::size_t field : list)
        cells.push_back(visible(row.report.record.textOf(field)));
    return cells;
}

TableWriter::TableWriter(const FieldList& list) : m_waiting({{"name"}}), m_widths(list.size() + 1) {
    for (const std::size_t field : list)
        m_waiting.front().emplace_back(fields()[field].name);
}

std::string TableWriter::add(std::vector<std::string> cells) {
    if (m_isBegun)
        return line(cells);
    m_waiting.push_back(std::move(cells));
    return m_waiting.size() > kMeasuredRows ? flush() : std::string();
}

std::string TableWriter::finish() {
    return m_isBegun ? std::string() : flush();
}

std::string TableWriter::flush() {
    for (const std::vector<std::string>& cells : m_waiting)
        for (std::size_t i = 0; i < cells.size(); ++i)
            m_widths[i] = std::max(m_widths[i], columns(cells[i]));
    std::string lines;
    for (const std::vector<std::string>& cells : m_waiting)
        lines += line(cells);
    m_waiting.clear();
    m_isBegun = true;
    return lines;
}

std::string TableWriter::line(const std::vector<std::string>& cells) const {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        text += cells[i];
        const std::size_t width = columns(cells[i]);
        if (i + 1 < cells.size())
            text.append(std::max(m_widths[i], width) - width + kColumnGap, ' ');
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text + "\n";
}

}  // namespace kvstation
