// The record's layout: every field and every reserved area with its place and meaning.
#pragma once

#include <string>
#include <vector>

namespace kvstation {

// Where each field comes from, in the order of fields(); empty where nobody looked.
using FieldSources = std::vector<std::string>;

std::string layoutText(const FieldSources& sources = {});
std::string layoutJson(const FieldSources& sources = {});
// The document docs/record.md.
std::string layoutMarkdown(const FieldSources& sources = {});

}  // namespace kvstation
