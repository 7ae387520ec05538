// On a terminal, the line that shows what a long collection waits for. Windows only.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "framework/Windows.h"
#include "kvstation/collect/LastQuestion.h"

namespace kvstation {

class WaitingLine {
  public:
    // `file`: standard error, a terminal or not.
    explicit WaitingLine(HANDLE file) : m_file(file) {}

    // Writes the line in the place of the one before; not where there is no terminal.
    void show(const Doing& doing);
    void clear();

  private:
    void write(std::string_view text) const;

    HANDLE m_file;
    std::array<char, Doing::kLongest + 64> m_room{};
    std::string_view m_line;  // what stands there now
};

}  // namespace kvstation
