#include "kvstation/verbs/LiveOptions.h"

#include <CLI/App.hpp>

#include "kvstation/platform/Errors.h"

namespace kvstation {
namespace {

constexpr unsigned kMostSeconds = 24 * 60 * 60;

}  // namespace

void addLiveOptions(CLI::App& command, LiveOptions& options) {
    command.add_option("--timeout", options.seconds, "End a collection on this computer that takes longer")
        ->type_name("SECONDS")
        ->check(CLI::Range(1U, kMostSeconds))
        ->capture_default_str();
    command.add_flag("--as-caller", options.asCaller,
                     "As a caller without a manifest sees this computer: since Windows 8.1 it is told version 6.2");
}

void refuseForDescribed(const LiveOptions& options) {
    if (options.asCaller)
        throw WrongUse("--as-caller is for this computer; a described station tells everyone the same version");
}

}  // namespace kvstation
