// What a redaction left as it was, for whoever must say whether it may leave the house.
#pragma once

#include <string>
#include <vector>

#include "simwin/station/Station.h"

namespace kvstation {

struct LeftText {
    std::string text;    // UTF-8, as it is now: a part of it may be a stand-in
    std::string place;   // where it stands first: "registry.reg [HKEY_CURRENT_USER\...\Devices]"
    std::size_t others;  // places where it stands too
};

// Every text of the two files with a word that isTelling and that both stations have, each text once. `redacted` must
// have been made of `station`. Seen is what is written, whatever the redaction looked at: names of members, keys and
// values too, and texts in binary data.
std::vector<LeftText> leftTexts(const simwin::Station& station, const simwin::Station& redacted);

// Writes them to standard error, one a line; nothing when there is none.
void tellLeftTexts(const std::vector<LeftText>& texts);

}  // namespace kvstation
