// The tool's verbs.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "kvstation/verbs/Verb.h"

namespace kvstation {

inline std::vector<std::string> allVerbs() {
    CLI::App tool;
    return {
#define KV_VERB(add) add(tool).command->get_name(),
#include "kvstation/verbs/Verbs.inc"
    };
}

}  // namespace kvstation
