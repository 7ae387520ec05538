// Writes what this build's simulated Windows knows of each code page into a file: natively out of ICU, on Windows out
// of Windows' own functions. The two are to be the same.
#include <cstdio>
#include <string>

#include "simwin/text/CodePage.h"

namespace {

void writeHex(std::FILE* file, std::string_view bytes) {
    for (const char byte : bytes)
        std::fprintf(file, "%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
}

// "83 5C" and what it is: its characters in UTF-8, its capital and its small letter.
void writeCharacter(std::FILE* file, std::string_view bytes) {
    std::fputs("from ", file);
    writeHex(file, bytes);
    std::fprintf(file, " %u ", static_cast<unsigned>(simwin::characterLength(bytes)));
    for (const std::string& one : {simwin::toUtf8(bytes), simwin::upperCase(bytes), simwin::lowerCase(bytes)}) {
        std::fputc(' ', file);
        writeHex(file, one);
    }
    std::fputc('\n', file);
}

void writeBytes(std::FILE* file) {
    for (unsigned first = 1; first < 256; ++first) {
        const char lead = static_cast<char>(first);
        writeCharacter(file, {&lead, 1});
        if (!simwin::isLeadByte(lead))
            continue;
        for (unsigned second = 1; second < 256; ++second) {
            const char pair[] = {lead, static_cast<char>(second)};
            writeCharacter(file, {pair, sizeof pair});
        }
    }
}

void writeUnits(std::FILE* file) {
    for (unsigned number = 1; number < 0x10000; ++number) {
        const auto unit = static_cast<char16_t>(number);
        std::fprintf(file, "to %04X ", number);
        writeHex(file, simwin::likeUtf16(unit));
        std::fputc('\n', file);
    }
}

}  // namespace

int main(int count, char** arguments) {
    std::FILE* file = count == 2 ? std::fopen(arguments[1], "wb") : nullptr;
    if (file == nullptr) {
        std::fputs("usage: codepage_tables FILE\n", stderr);
        return 2;
    }
    for (const unsigned page : simwin::knownCodePages()) {
        const simwin::CodePageScope scope(page);
        std::fprintf(file, "code page %u\n", page);
        writeBytes(file);
        writeUnits(file);
    }
    return std::fclose(file) == 0 ? 0 : 1;
}
