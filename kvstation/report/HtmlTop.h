// What stands first on the page: which station this is, when and by what it was collected, and what people ask first.
#pragma once

#include <cstddef>
#include <string>

#include "kvstation/report/Report.h"

namespace kvstation {

std::string stationName(const Record& record);

std::string topOfPage(const Report& report);

// The cards of user, address, Windows and session.
std::string glance(const Report& report);

// How many of some fields hold something: "9 of 12 fields".
class FilledFields {
  public:
    void add(const Record& record, std::size_t field) {
        ++m_all;
        m_filled += record.isEmpty(field) ? 0 : 1;
    }
    std::string text() const { return std::to_string(m_filled) + " of " + std::to_string(m_all) + " fields"; }

  private:
    std::size_t m_filled = 0;
    std::size_t m_all = 0;
};

}  // namespace kvstation
