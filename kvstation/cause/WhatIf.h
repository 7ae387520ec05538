// A station as it would be with something changed: the options that several verbs share.
#pragma once

#include <string>
#include <vector>

#include "simwin/station/Station.h"

namespace CLI {
class App;
}

namespace kvstation {

struct WhatIf {
    std::vector<std::string> set;    // NAME=VALUE
    std::vector<std::string> unset;  // NAME
    std::vector<std::string> value;  // HKLM\KEY\NAME=TEXT
    std::vector<std::string> fail;   // CALL
    std::string version;             // MAJOR.MINOR.BUILD

    bool isEmpty() const { return set.empty() && unset.empty() && value.empty() && fail.empty() && version.empty(); }
};

// `whatIf` must live as long as the command.
void addWhatIf(CLI::App& command, WhatIf& whatIf);
// The two of them that a disk without a running Windows can want.
void addWhatIfOfDisk(CLI::App& command, WhatIf& whatIf);

// Changes the station. Throws WrongUse, which says what was expected, and then has changed nothing.
void apply(const WhatIf& whatIf, simwin::Station& station);

}  // namespace kvstation
