// Every text that a described station can give, by what it is: whatever a collection puts into the record is made of
// them and of the module's own fixed texts.
#pragma once

#include <set>
#include <string>

#include "simwin/Station.h"

namespace kvtest {

struct StationTexts {
    explicit StationTexts(const simwin::Station& station);

    std::set<std::string> registry;      // names of keys and values, values as the module reads them; their ";" parts
    std::set<std::string> names;         // of the computer and of the client device, also in upper case
    std::set<std::string> users;         // in each form that there is, also in upper case
    std::set<std::string> addresses;     // of the station, the client and the server
    std::set<std::string> dnsNames;      // an address without a name is its own
    std::set<std::string> macAddresses;  // in hexadecimal digits
    // Described as in the record, such as "C(SYSTEM):(NTFS:8189 MB 37% free) ", with and without the label and the file
    // system; a size that cannot be read is 0, and its percentage that of a division by 0.
    std::set<std::string> fixedDrives;
};

std::string upperCase(std::string text);

}  // namespace kvtest
