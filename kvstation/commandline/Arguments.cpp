#include "kvstation/commandline/Arguments.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "kvstation/calls/CallRows.h"
#include "kvstation/commandline/Shells.h"
#include "kvstation/record/FieldTable.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using Names = std::vector<std::string>;

Names none() {
    return {};
}

Names fieldNames() {
    Names names;
    for (const Field& field : fields())
        names.emplace_back(field.name);
    return names;
}

Names callNames() {
    Names names;
    for (const CallRow* row : questions())
        names.emplace_back(row->call);
    return names;
}

Names codePages() {
    Names pages;
    std::istringstream list(simwin::listOfCodePages());
    for (std::string page; std::getline(list >> std::ws, page, ',');)
        pages.push_back(page);
    return pages;
}

struct PlaceholderRow {
    std::string_view name;
    Takes takes;
    Names (*words)();
};

constexpr PlaceholderRow kPlaceholders[] = {
    {"STATION", Takes::Folder, none},   {"OUT", Takes::Folder, none},
    {"FILE", Takes::Path, none},        {"OLD NEW", Takes::Path, none},
    {"HIVES", Takes::Path, none},       {"A", Takes::Path, none},
    {"B", Takes::Path, none},           {"FIELD", Takes::Word, fieldNames},
    {"CALL", Takes::Word, callNames},   {"PAGE", Takes::Word, codePages},
    {"SHELL", Takes::Word, shellNames}, {"VERB", Takes::Word, none},
    {"N", Takes::Text, none},           {"NAME", Takes::Text, none},
    {"NAME=VALUE", Takes::Text, none},  {"KEY\\NAME=TEXT", Takes::Text, none},
    {"M.m.BUILD", Takes::Text, none},   {"SECONDS", Takes::Text, none},
};

const PlaceholderRow* findRow(std::string_view placeholder) {
    const auto* found = std::ranges::find(kPlaceholders, placeholder, &PlaceholderRow::name);
    return found == std::end(kPlaceholders) ? nullptr : found;
}

}  // namespace

Argument argumentOf(const std::string& placeholder) {
    const PlaceholderRow* row = findRow(placeholder);
    return row == nullptr ? Argument{.placeholder = placeholder, .takes = Takes::Text, .words = {}}
                          : Argument{.placeholder = placeholder, .takes = row->takes, .words = row->words()};
}

bool isKnownPlaceholder(std::string_view placeholder) {
    return findRow(placeholder) != nullptr;
}

}  // namespace kvstation
