// The verb "capture": this computer as a described station.
#include <CLI/App.hpp>
#include <memory>

#include "kvstation/capture/LiveStation.h"
#include "kvstation/collect/CollectionGuard.h"
#include "kvstation/collect/RunningSystem.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/record/ProductName.h"
#include "kvstation/record/Record.h"
#include "kvstation/report/Differences.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/verbs/LiveOptions.h"
#include "kvstation/verbs/RedactOption.h"
#include "kvstation/verbs/Verb.h"

namespace kvstation {
namespace {

struct CaptureOptions {
    std::string station;
    RedactOption redact;
    LiveOptions live;
};

// The folder as it was written answers the same, or somebody would look for a fault where there is none.
void checkReplay(const std::string& folder, const RecordBytes& wanted) {
    simwin::Machine machine(readStationFolder(folder));
    const RecordBytes found = collectOn(machine);
    if (found == wanted)
        return;
    const auto nameOf = [](std::size_t field) { return fields()[field].name; };
    const std::string names = joinWords(differingFields(wanted, found), ", ", nameOf);
    throw Failure(folder + " was written, but it gives another record (" + names +
                  "): this computer answered one question in two ways");
}

int capture(const CaptureOptions& options) {
    const CollectionGuard guard(options.live.terms());
    simwin::CallObserver nobody;
    LiveStation live = captureHere(nobody);
    simwin::Station& station = live.station;
    station.description = "captured from " + productName(runningSystem()) +
                          (options.live.asCaller ? " as a caller without a manifest sees it" : "");
    writeStationAs(station, options.station, options.redact);
    if (!options.redact.isGiven())
        checkReplay(options.station, live.record);
    writeResult(options.station + "\n");
    return kExitSuccess;
}

}  // namespace

Verb addCapture(CLI::App& tool) {
    const auto options = std::make_shared<CaptureOptions>();
    CLI::App* command = tool.add_subcommand("capture", "Write this computer down as a described station (Windows)");
    command->add_option("STATION", options->station, "The folder to write registry.reg and station.json into")
        ->type_name("")
        ->required();
    addRedactOption(*command, options->redact);
    addLiveOptions(*command, options->live);
    return {command, "kvstation capture station     # then: kvstation simulate station",
            [options] { return capture(*options); }};
}

}  // namespace kvstation
