#include "simwin/machine/CallText.h"

#include <algorithm>

#include "simwin/machine/HostAnswer.h"
#include "simwin/machine/Machine.h"
#include "simwin/text/Address.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace simwin {
namespace {

constexpr std::size_t kLongestText = 512;
constexpr std::size_t kLongestBytes = 64;

bool isPrintable(char byte) {
    return static_cast<unsigned char>(byte) >= 0x20 && byte != 0x7F;
}

void appendCharacter(std::string& text, std::string_view character) {
    const std::string utf8 = toUtf8(character);
    if (!isPrintable(character.front()) || !isUtf8(utf8)) {
        for (const char byte : character) {
            text += "\\x";
            text += hexDigits(static_cast<unsigned char>(byte), 2);
        }
        return;
    }
    if (character == "\"" || character == "\\")
        text += '\\';
    text += utf8;
}

}  // namespace

void appendQuoted(std::string& text, std::string_view bytes) {
    text += '"';
    for (std::string_view rest = bytes.substr(0, kLongestText); !rest.empty();) {
        const std::string_view character = rest.substr(0, characterLength(rest));
        appendCharacter(text, character);
        rest.remove_prefix(character.size());
    }
    text += '"';
    if (bytes.size() > kLongestText)
        text += "...";
}

void appendBytes(std::string& text, std::string_view bytes) {
    const std::string_view content = bytes.substr(0, bytes.find_last_not_of('\0') + 1);
    if (!content.empty() && content.size() < bytes.size() && std::all_of(content.begin(), content.end(), isPrintable)) {
        appendQuoted(text, content);
        return;
    }
    for (std::size_t i = 0; i < std::min(bytes.size(), kLongestBytes); ++i) {
        if (i != 0)
            text += ' ';
        text += hexDigits(static_cast<unsigned char>(bytes[i]), 2);
    }
    if (bytes.size() > kLongestBytes)
        text += " ...";
}

void appendNumber(std::string& text, std::int64_t number) {
    text += std::to_string(number);
}

void appendNumber(std::string& text, std::uint64_t number) {
    text += std::to_string(number);
}

void appendHandle(std::string& text, Machine& machine, std::uintptr_t handle) {
    if (handle == 0) {
        text += "null";
        return;
    }
    const std::string what = toUtf8(machine.describe(handle));
    if (!machine.keepsLog()) {
        text += what.empty() ? "not null" : what;
        return;
    }
    text += (what.empty() ? "0x" : what + " 0x") + hexDigits(handle);
}

void appendHost(std::string& text, const winsock::HostEntry* host) {
    if (host == nullptr) {
        text += "null";
        return;
    }
    appendQuoted(text, host->h_name != nullptr ? host->h_name : "");
    for (const std::string& address : addressesOf(*host)) {
        text += ", ";
        if (address.size() == 4)
            text += dotted(address);
        else
            appendBytes(text, address);
    }
}

}  // namespace simwin
