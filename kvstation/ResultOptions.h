// How a verb that has a record gives it out: the options that these verbs share.
#pragma once

#include <string>

#include "kvstation/Report.h"

namespace CLI {
class App;
}

namespace kvstation {

struct ResultOptions {
    bool all = false;
    bool json = false;
    std::string field;
    std::string html;  // file names; empty: not asked for
    std::string raw;
};

// `options` must live as long as the command.
void addResultOptions(CLI::App& command, ResultOptions& options);

// Writes the files that were asked for, and to standard output what else was asked for: without any wish the text.
void giveOut(const Report& report, const ResultOptions& options);

}  // namespace kvstation
