// Names and addresses that a text shows by its form alone, whoever wrote it: a printer's name, a path, a command line.
#pragma once

#include <string_view>
#include <vector>

namespace kvstation {

enum class PartKind {
    Text,      // whatever else stands there
    Computer,  // the server of \\SERVER\share, //server/share, ,,SERVER,printer and ##SERVER#share, and a mail domain
    ServerAddress,  // a dotted address in such a place
    User,           // of user@domain
    Address,        // a dotted IPv4 address anywhere else; it may be the version of a program
    Physical,       // six to sixteen pairs of hexadecimal digits joined by "-" or by ":"
    LongAddress,    // an IPv6 address
};

struct NamedPart {
    PartKind kind;
    std::string_view text;
};

// All of the text, in its order: "Canon on \\srv1\x" is "Canon on \\" (Text), "srv1" (Computer) and "\x" (Text).
std::vector<NamedPart> namedPartsOf(std::string_view text);

// A letter of the code page in force or a digit.
bool isWordCharacter(char character);
// What the name of a computer is made of: words, "-", "_" and ".".
bool isNameCharacter(char character);
bool isDigit(char character);
bool isLetter(char character);

}  // namespace kvstation
