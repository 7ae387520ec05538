// The options of the verbs that collect on this computer.
#pragma once

#include "kvstation/collect/CollectionGuard.h"

namespace CLI {
class App;
}

namespace kvstation {

struct LiveOptions {
    unsigned seconds = static_cast<unsigned>(CollectionTerms::kUsualLimit.count());
    bool asCaller = false;

    CollectionTerms terms() const { return {std::chrono::seconds(seconds), asCaller}; }
};

// `options` must live as long as the command.
void addLiveOptions(CLI::App& command, LiveOptions& options);

// Throws WrongUse where an option asks of a described station what only this computer can tell.
void refuseForDescribed(const LiveOptions& options);

}  // namespace kvstation
