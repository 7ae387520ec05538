// On a terminal, the line that shows what a long collection waits for. Windows only.
#pragma once

#include <cstddef>

#include "framework/Windows.h"
#include "kvstation/LastQuestion.h"

namespace kvstation {

class WaitingLine {
  public:
    // `file`: standard error, a terminal or not.
    explicit WaitingLine(HANDLE file) : m_file(file) {}

    // Writes the line in the place of the one before; not where there is no terminal.
    void show(const Doing& doing);
    void clear();

  private:
    void write(const char* text, std::size_t length) const;

    HANDLE m_file;
    std::size_t m_columns = 0;  // what it takes up now
};

}  // namespace kvstation
