// Rows as a table for people: a column for the name, and one for each field.
#pragma once

#include <string>
#include <vector>

#include "kvstation/rows/StationRow.h"

namespace kvstation {

// A row's cells, in which nothing can break a line.
std::vector<std::string> tableCells(const StationRow& row, const FieldList& fields);

// Columns are as wide as the first rows need; a later cell that is wider moves those behind it in its line.
class TableWriter {
  public:
    explicit TableWriter(const FieldList& fields);

    // The lines that are ready.
    std::string add(std::vector<std::string> cells);
    std::string finish();

  private:
    std::string line(const std::vector<std::string>& cells) const;
    std::string flush();

    std::vector<std::vector<std::string>> m_waiting;  // the first rows, the header before them
    std::vector<std::size_t> m_widths;
    bool m_isBegun = false;
};

}  // namespace kvstation
