// The letters beyond ASCII of the code page in force.
#pragma once

#include <string_view>

namespace kvstation {

// In code page 1252 those from 0xC0 on; in any other one of one byte all characters from 0x80 on, so that none of a
// name's stays.
bool isPageLetter(char character);

// Those that stand for others: small ones where the page has such, never empty.
std::string_view pageLetters();

// Stand-ins are made byte by byte. Throws Failure for a code page whose characters take several.
void refuseWidePage(unsigned number);

}  // namespace kvstation
