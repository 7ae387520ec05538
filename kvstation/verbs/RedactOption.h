// The option --redact of the verbs that write a station down.
#pragma once

#include <string>

#include "kvstation/redact/Redaction.h"
#include "simwin/station/Station.h"

namespace CLI {
class App;
}

namespace kvstation {

struct RedactOption {
    std::string extent;  // empty: it was not given

    bool isGiven() const { return !extent.empty(); }
};

// `option` must live as long as the command.
void addRedactOption(CLI::App& command, RedactOption& option);

// Writes the station into the folder, redacted where the option was given.
void writeStationAs(const simwin::Station& station, const std::string& folder, const RedactOption& option);

// Writes the station without what tells whose it is, and tells on standard error what it left as it was.
void writeRedacted(const simwin::Station& station, const std::string& folder, Redacting extent);

}  // namespace kvstation
