// Rows in the table "stations" of an SQLite file: a column for each thing that a row tells, a row for each name.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kvstation/rows/StationRow.h"
#include "kvstation/sets/Cells.h"
#include "kvstation/sets/RecordSet.h"

namespace kvstation {

// In the order of the table's columns. A text that holds bytes that are no character is a blob of its bytes.
std::vector<Cell> databaseCells(const StationRow& row);

class DatabaseWriter {
  public:
    // Makes the file or the table where it is missing. All functions throw Failure, in one line with the file's name.
    // Nothing is in the file before `finish`.
    explicit DatabaseWriter(const std::string& file);
    DatabaseWriter(const DatabaseWriter&) = delete;
    DatabaseWriter& operator=(const DatabaseWriter&) = delete;
    ~DatabaseWriter();

    // In the place of one of the same name, if there is one.
    void put(const std::vector<Cell>& cells);
    void finish();

  private:
    struct Open;
    std::unique_ptr<Open> m_open;
};

// True when the file begins as SQLite's do.
bool isDatabase(const std::string& path);

// The rows as a set.
class DatabaseSet : public RecordSet {
  public:
    // Throws Failure, in one line with the file's name.
    explicit DatabaseSet(const std::string& file);
    ~DatabaseSet() override;

    Record record(const std::string& name) override;

  private:
    struct Open;
    std::unique_ptr<Open> m_open;
};

}  // namespace kvstation
