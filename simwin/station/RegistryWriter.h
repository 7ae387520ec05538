// A registry as a registry file that RegistryReader reads back.
#pragma once

#include <string>

#include "simwin/station/RegistryTree.h"

namespace simwin {

// UTF-8 text in the form that Windows itself exports, version 5.00: every key in a block of its own, long data wrapped.
// Texts are those of the ANSI code page in force. Where one of them holds bytes that are no character, the form is
// REGEDIT4, whose data are bytes; half a character in a name becomes "?".
std::string writeRegistry(const RegistryTree& tree);

}  // namespace simwin
