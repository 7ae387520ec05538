#include "kvstation/verbs/TimeLimit.h"

#include <CLI/App.hpp>

namespace kvstation {
namespace {

constexpr unsigned kMostSeconds = 24 * 60 * 60;

}  // namespace

void addTimeLimit(CLI::App& command, TimeLimit& limit) {
    command.add_option("--timeout", limit.seconds, "End a collection on this computer that takes longer")
        ->type_name("SECONDS")
        ->check(CLI::Range(1U, kMostSeconds))
        ->capture_default_str();
}

}  // namespace kvstation
