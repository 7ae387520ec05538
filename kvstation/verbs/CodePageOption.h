// The option that names the ANSI code page of records in files, which do not tell it themselves.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "simwin/text/CodePage.h"

namespace CLI {
class App;
}

namespace kvstation {

// As given: none, or one for each record; the last one is that of all records behind.
struct CodePageOption {
    std::vector<unsigned> numbers;

    unsigned of(std::size_t record) const {
        return numbers.empty() ? simwin::kDefaultCodePage : numbers[std::min(record, numbers.size() - 1)];
    }
};

// For a verb that takes `most` records. `option` must live as long as the command.
void addCodePage(CLI::App& command, CodePageOption& option, int most);

}  // namespace kvstation
