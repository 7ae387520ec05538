// What may be typed in the place of a placeholder of the command line, such as FILE or FIELD.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

enum class Takes {
    Text,  // whatever the person means; nothing can be offered
    Path,  // a file or a folder
    Folder,
    Word,  // one of a list
};

struct Argument {
    std::string placeholder;
    Takes takes = Takes::Text;
    std::vector<std::string> words;  // of Takes::Word
};

// By the table of placeholders, to which each one of the command line belongs; one that is not there takes text.
Argument argumentOf(const std::string& placeholder);

bool isKnownPlaceholder(std::string_view placeholder);

}  // namespace kvstation
