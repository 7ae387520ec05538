// Version resources of files.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "simwin/station/Station.h"

namespace simwin {

// A VS_VERSIONINFO block with the fixed file information and nothing else.
std::string makeVersionResource(const FileVersion& version);

// Where a block's root value stands, and its length, which is at most what the block holds. None when the block holds
// no whole header or has no fixed information.
struct VersionValue {
    std::size_t offset;
    std::size_t length;
};
std::optional<VersionValue> findRootValue(std::string_view block);

// The version in a root value; none where it ends before that.
std::optional<FileVersion> versionIn(std::string_view rootValue);

}  // namespace simwin
