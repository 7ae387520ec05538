// Names and addresses that a text shows by its form alone, whoever wrote it: a printer's name, a path, a command line.
#pragma once

#include <vector>

#include "kvstation/redact/PageText.h"

namespace kvstation {

enum class PartKind {
    // Of words
    Text,      // whatever else stands there
    Computer,  // the server of \\SERVER\share, //server/share, ,,SERVER,printer and ##SERVER#share, and a mail domain
    User,      // of user@domain
    // Of a form
    ServerAddress,  // a dotted address in the place of a computer
    Address,        // a dotted IPv4 address anywhere else; it may be the version of a program
    Physical,       // six to sixteen pairs of hexadecimal digits joined by "-" or by ":"
    LongAddress,    // an IPv6 address
};

// Whether its words are what tells something. A form has stand-ins of its own.
constexpr bool isOfWords(PartKind kind) {
    return kind <= PartKind::User;
}

struct NamedPart {
    PartKind kind;
    PageTextView text;
};

// All of the text, in its order: "Canon on \\srv1\x" is "Canon on \\" (Text), "srv1" (Computer) and "\x" (Text).
std::vector<NamedPart> namedPartsOf(PageTextView text);

// What the name of a computer is made of: words, "-", "_" and ".".
bool isNameCharacter(char32_t character);

}  // namespace kvstation
