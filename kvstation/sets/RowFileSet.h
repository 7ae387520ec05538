// A file with a row as JSON in each line, as a set. Lines are read when they are asked for.
#pragma once

#include <cstddef>
#include <fstream>
#include <map>

#include "kvstation/sets/RecordSet.h"

namespace kvstation {

// True when the file's first line is a row.
bool isRowFile(const std::string& path);

class RowFileSet : public RecordSet {
  public:
    // Throws Failure. A line without a name is wrong, and so is one whose name an earlier one has.
    explicit RowFileSet(const std::string& path);

    Record record(const std::string& name) override;

  private:
    struct Line {
        std::size_t number;  // from 1 on
        std::streamoff offset;
        std::size_t length;  // in bytes, without its end
    };
    void addLine(std::string_view text, const Line& line);

    std::string m_path;
    std::ifstream m_file;
    std::map<std::string, Line, std::less<>> m_lines;
};

}  // namespace kvstation
