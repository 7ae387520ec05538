// The option --timeout of the verbs that collect on this computer.
#pragma once

#include <chrono>

#include "kvstation/collect/CollectionGuard.h"

namespace CLI {
class App;
}

namespace kvstation {

struct TimeLimit {
    unsigned seconds = static_cast<unsigned>(CollectionGuard::kUsualLimit.count());

    std::chrono::seconds duration() const { return std::chrono::seconds(seconds); }
};

// `limit` must live as long as the command.
void addTimeLimit(CLI::App& command, TimeLimit& limit);

}  // namespace kvstation
