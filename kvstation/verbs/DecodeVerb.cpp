// The verb "decode": records that were kept in files.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/report/RecordFile.h"
#include "kvstation/sets/StandardInput.h"
#include "kvstation/verbs/CodePageOption.h"
#include "kvstation/verbs/ResultOptions.h"
#include "kvstation/verbs/RowOptions.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

struct DecodeOptions {
    ResultOptions result;
    SetOptions set;
    CodePageOption codePage;
};

Report readRecord(const std::string& path) {
    return path == kStandardInput ? recordFromFileBytes(readStandardInput(kLongestRecordFile), "standard input")
                                  : readRecordFile(path);
}

int decode(const DecodeOptions& options) {
    if (options.set.places.isEmpty())
        throw WrongUse("FILE or --from is required; 'kvstation decode --help' tells more");
    const unsigned codePage = options.codePage.of(0);
    simwin::useCodePage(codePage);
    if (!options.set.isSet()) {
        giveOut(readRecord(options.set.places.given.front()), options.result);
        return kExitSuccess;
    }
    return giveOutRows(options.set, options.result, SourceKind::Records, "decoding", [&](const Source& source) {
        return StationRow{source.name, source.path, codePage, readRecord(source.path)};
    });
}

}  // namespace

Verb addDecode(CLI::App& tool) {
    const auto options = std::make_shared<DecodeOptions>();
    CLI::App* command = tool.add_subcommand("decode", "Show records from files: their raw bytes, or JSON");
    command
        ->add_option("FILE", options->set.places.given,
                     "Records' files, folders of them, or patterns; - is a record from standard input")
        ->type_name("")
        ->check(checkFileName);
    addCodePage(*command, options->codePage, 1);
    addResultOptions(*command, options->result);
    addSetOptions(*command, options->set);
    return {command, "kvstation decode station.bin --json", [options] { return decode(*options); }};
}

}  // namespace kvstation
