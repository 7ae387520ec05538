// The option --timeout of the verbs that collect on this computer.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace kvstation {

struct TimeLimit {
    unsigned seconds = 60;

    std::chrono::seconds duration() const { return std::chrono::seconds(seconds); }
    // None where a described station is named, whose collection cannot hang.
    std::optional<std::chrono::seconds> unlessDescribed(const std::string& station) const {
        return station.empty() ? std::optional(duration()) : std::nullopt;
    }
};

// `limit` must live as long as the command.
void addTimeLimit(CLI::App& command, TimeLimit& limit);

}  // namespace kvstation
