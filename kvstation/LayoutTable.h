// The record's layout: every field and every reserved area with its place and meaning.
#pragma once

#include <string>

namespace kvstation {

std::string layoutText();
std::string layoutJson();
// The document docs/record.md.
std::string layoutMarkdown();

}  // namespace kvstation
