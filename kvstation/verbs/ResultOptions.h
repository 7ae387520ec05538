// How a verb that has a record gives it out: the options that these verbs share.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kvstation/platform/Files.h"
#include "kvstation/report/Report.h"
#include "kvstation/report/TextView.h"

namespace CLI {
class App;
}

namespace kvstation {

struct ResultOptions {
    TextOptions text;  // without what the terminal decides
    bool json = false;
    std::vector<std::string> fields;
    std::string html;  // file names, "-" for standard output; empty: not asked for
    std::string raw;
};

// For an option that takes the name of a field: what is wrong with it, or empty.
std::string checkFieldName(const std::string& name);

// Indexes into fields(), in the order in which they were asked for, each once.
std::vector<std::size_t> askedFields(const ResultOptions& options);

// `options` must live as long as the command.
void addResultOptions(CLI::App& command, ResultOptions& options);

// Writes the files that were asked for, all or none, and to standard output what else was asked for: without any wish
// the text. Throws Failure, and WrongUse where standard output would get two results.
void giveOut(const Report& report, const ResultOptions& options);

// Several results, all or none, each into its file or to standard output. Throws Failure, and WrongUse where two have
// one place.
void writeResults(std::vector<NewFile> results);

}  // namespace kvstation
