// The verb "import": the Windows on a disk as a described station.
#include <CLI/App.hpp>
#include <cstdio>
#include <memory>

#include "kvstation/collect/Stage.h"
#include "kvstation/import/HiveImport.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/text/VisibleText.h"
#include "kvstation/verbs/RedactOption.h"
#include "kvstation/verbs/Verb.h"
#include "simwin/station/RegistryReader.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/station/StationReader.h"
#include "simwin/station/StationWriter.h"

namespace kvstation {
namespace {

struct ImportOptions {
    std::string hives;
    std::string user;
    std::string station;
    WhatIf whatIf;
    RedactOption redact;
};

// Before anything is written: the two files, read again, give what the hives gave.
void checkReplay(const ImportedStation& imported) {
    simwin::Station again = simwin::parseStation(simwin::writeStation(imported.station), "station.json");
    again.registry = simwin::readRegistry(simwin::writeRegistry(imported.station.registry), "registry.reg");
    simwin::Machine machine(std::move(again));
    if (collectOn(machine) != imported.record)
        throw Failure("the hives hold names that no station can describe; nothing was written");
}

void tellUndescribed(const std::vector<std::string>& lines) {
    std::string text = "kvstation: left undescribed, since no hive tells it:\n";
    for (const std::string& line : lines)
        text += "  " + visible(line) + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

int import(const ImportOptions& options) {
    HiveRegistry registry(findHives(options.hives, options.user));
    const ImportedStation imported = importStation(registry, options.whatIf);
    checkReplay(imported);
    writeStationAs(imported.station, options.station, options.redact);
    for (const std::string& warning : imported.warnings)
        reportError(warning);
    tellUndescribed(imported.undescribed);
    writeResult(options.station + "\n");
    return kExitSuccess;
}

}  // namespace

Verb addImport(CLI::App& tool) {
    const auto options = std::make_shared<ImportOptions>();
    CLI::App* command =
        tool.add_subcommand("import", "Make a described station out of the registry hives of a Windows disk");
    command
        ->add_option("HIVES", options->hives,
                     "The root of the disk, a folder with SYSTEM or SYSTEM.DAT, or a SYSTEM hive by itself")
        ->type_name("")
        ->required();
    command->add_option("STATION", options->station, "The folder to write registry.reg and station.json into")
        ->type_name("")
        ->required();
    command
        ->add_option("--user", options->user, "The profile to take, where the disk has several; none: no user's hives")
        ->type_name("NAME");
    addWhatIfOfDisk(*command, options->whatIf);
    addRedactOption(*command, options->redact);
    return {command, "kvstation import /mnt/disk station   # then: kvstation simulate station",
            [options] { return import(*options); }};
}

}  // namespace kvstation
