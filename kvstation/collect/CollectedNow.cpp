#include "kvstation/collect/CollectedNow.h"

#include <ctime>

#include "kvstation/collect/Stage.h"

namespace kvstation {
namespace {

std::string utcNow() {
    const std::time_t now = std::time(nullptr);
    char text[sizeof "2026-11-22T12:00:00Z"];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&now))};
}

}  // namespace

simwin::Collected collectedNow() {
    return {.at = utcNow(), .library = libraryVersion(), .tool = KVSTATION_VERSION};
}

}  // namespace kvstation
