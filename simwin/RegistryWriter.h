// A registry as a registry file that RegistryReader reads back.
#pragma once

#include <string>

#include "simwin/RegistryTree.h"

namespace simwin {

// UTF-8 text in the form that Windows itself exports, version 5.00: every key in a block of its own, long data wrapped.
std::string writeRegistry(const RegistryTree& tree);

}  // namespace simwin
