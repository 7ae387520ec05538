// The verb "decode": a record that was kept in a file.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CodePageOption.h"
#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/RecordFile.h"
#include "kvstation/ResultOptions.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

struct DecodeOptions {
    ResultOptions result;
    std::string file;
    CodePageOption codePage;
};

int decode(const DecodeOptions& options) {
    simwin::useCodePage(options.codePage.of(0));
    giveOut(readRecordFile(options.file), options.result);
    return kExitSuccess;
}

}  // namespace

Verb addDecode(CLI::App& tool) {
    const auto options = std::make_shared<DecodeOptions>();
    CLI::App* command = tool.add_subcommand("decode", "Show a record from a file: its raw bytes, or JSON");
    command->add_option("FILE", options->file, "The record's file")->type_name("")->required()->check(checkFileName);
    addCodePage(*command, options->codePage, 1);
    addResultOptions(*command, options->result);
    return {command, "kvstation decode station.bin --json", [options] { return decode(*options); }};
}

}  // namespace kvstation
