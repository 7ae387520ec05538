#include "kvstation/verbs/RedactOption.h"

#include <CLI/App.hpp>

#include "kvstation/capture/StationFolder.h"
#include "kvstation/redact/LeftTexts.h"

namespace kvstation {
namespace {

constexpr const char* kNames = "names";
constexpr const char* kAll = "all";

std::string checkExtent(const std::string& text) {
    return text == kNames || text == kAll ? ""
                                          : "it is " + std::string(kNames) + " or " + kAll + ", not '" + text + "'";
}

}  // namespace

void addRedactOption(CLI::App& command, RedactOption& option) {
    command
        .add_flag(
            std::string("--redact{") + kNames + "}", option.extent,
            "Stand-ins for what tells whose the station is; what stays is listed. --redact=all: for every text that "
            "is no word of Windows")
        ->check(checkExtent);
}

void writeStationAs(const simwin::Station& station, const std::string& folder, const RedactOption& option) {
    if (option.isGiven())
        writeRedacted(station, folder, option.extent == kAll ? Redacting::Everything : Redacting::Names);
    else
        writeStationFolder(station, folder);
}

void writeRedacted(const simwin::Station& station, const std::string& folder, Redacting extent) {
    const simwin::Station made = redacted(station, extent);
    writeStationFolder(made, folder);
    tellLeftTexts(leftTexts(station, made));
}

}  // namespace kvstation
