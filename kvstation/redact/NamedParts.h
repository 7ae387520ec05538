// What a text shows by its form alone, such as names and addresses, whoever wrote it: a printer's name, a path, a
// command line.
#pragma once

#include <vector>

#include "kvstation/redact/TextForm.h"

namespace kvstation {

enum class PartKind {
    Text,      // whatever else stands there
    Computer,  // the server of \\SERVER\share, //server/share, ,,SERVER,printer and ##SERVER#share, and a mail domain
    User,      // of user@domain
};

struct NamedPart {
    PartKind kind;
    const TextForm* form;  // null: its words are what tells something
    PageTextView text;
};

// All of the text, in its order: "Canon on \\srv1\x" is "Canon on \\" (Text), "srv1" (Computer) and "\x" (Text).
std::vector<NamedPart> namedPartsOf(PageTextView text);

// What the name of a computer is made of: words, "-", "_" and ".".
bool isNameCharacter(char32_t character);

}  // namespace kvstation
