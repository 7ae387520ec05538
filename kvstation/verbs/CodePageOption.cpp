#include "kvstation/verbs/CodePageOption.h"

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>
#include <charconv>
#include <string>

namespace kvstation {
namespace {

std::string checkCodePage(const std::string& given) {
    unsigned number = 0;
    const auto error = std::from_chars(given.data(), given.data() + given.size(), number).ec;
    if (error == std::errc() && given == std::to_string(number) && simwin::isKnownCodePage(number))
        return {};
    return "'" + given + "' is none of the known code pages: " + simwin::listOfCodePages();
}

}  // namespace

void addCodePage(CLI::App& command, CodePageOption& option, int most) {
    const std::string each = most > 1 ? "; given twice, that of A and that of B" : "";
    command
        .add_option("--code-page", option.numbers,
                    "The ANSI code page of a raw record's texts, which the record itself does not tell; 1252 unless "
                    "given" +
                        each)
        ->type_name("PAGE")
        ->expected(1, most)
        ->allow_extra_args(false)
        ->check(checkCodePage);
}

}  // namespace kvstation
