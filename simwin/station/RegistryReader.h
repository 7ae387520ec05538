// Reads registry exports: "Windows Registry Editor Version 5.00" and "REGEDIT4".
#pragma once

#include <string>
#include <string_view>

#include "simwin/station/RegistryTree.h"
#include "simwin/text/ReadError.h"

namespace simwin {

inline constexpr std::size_t kLargestExport = std::size_t{64} << 20;

// The tree that an export describes. `fileName` stands in errors only.
//
// The content is UTF-16LE with its byte-order mark, UTF-8 with or without one, or else text of the ANSI code page in
// force. The hive is written out in full; the values of a Version 5.00 file are those that the narrow calls see: its
// texts, also as hex(1), hex(2) and hex(7), are UTF-16 and become code-page text, a missing terminator stays missing. A
// later value replaces an earlier one of the same name. Exports may be put together in one file, each with its own
// first line; all must be in one encoding.
//
// Throws ReadError ("station/registry.reg:12: ...") for what is no export, for what removes keys or values, and
// beyond these limits: 64 MiB, names of 255 (keys) and 16383 (values) characters, 512 levels, 500000 keys, 1000000
// values.
RegistryTree readRegistry(std::string_view content, const std::string& fileName);

}  // namespace simwin
