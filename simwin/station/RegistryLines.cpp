#include "simwin/station/RegistryLines.h"

#include <algorithm>
#include <charconv>

#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"
#include "simwin/text/ReadError.h"

namespace simwin {
namespace {

constexpr std::size_t kMostDigits = 8;

std::string_view withoutBlanks(std::string_view line) {
    line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
    return line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
}

}  // namespace

bool RegistryLines::next() {
    if (!nextRaw())
        return false;
    m_line = withoutBlanks(m_line);
    return true;
}

bool RegistryLines::nextRaw() {
    if (m_rest.empty())
        return false;
    const std::size_t end = m_rest.find('\n');
    m_line = m_rest.substr(0, end);
    if (m_line.ends_with('\r'))
        m_line.remove_suffix(1);
    m_rest = end == std::string_view::npos ? std::string_view() : m_rest.substr(end + 1);
    ++m_number;
    return true;
}

void RegistryLines::skip(std::size_t count) {
    m_line = withoutBlanks(m_line.substr(count));
}

void RegistryLines::fail(const std::string& what) const {
    throw ReadError(m_fileName + ":" + std::to_string(std::max<std::size_t>(m_number, 1)) + ": " + what);
}

std::string RegistryLines::takeQuoted() {
    std::string text;
    const std::size_t firstLine = m_number;
    m_line.remove_prefix(1);
    while (!m_line.starts_with('"')) {
        if (!m_line.empty()) {
            text += takeCharacter();
        } else if (nextRaw()) {
            text += "\r\n";
        } else {
            m_number = firstLine;
            fail("the closing quote is missing");
        }
    }
    skip(1);
    return text;
}

// In UTF-8 no byte of a longer character is one that has a meaning here. No character's second byte is a quote, so that
// a first byte before one is half a character, and the quote ends the text.
std::size_t RegistryLines::lengthOfNext() const {
    const std::size_t length = m_isUtf8 ? 1 : characterLength(m_line);
    return length == 2 && m_line[1] == '"' ? 1 : length;
}

std::string RegistryLines::takeCharacter() {
    std::string character(m_line.substr(0, lengthOfNext()));
    m_line.remove_prefix(character.size());
    if (character != "\\")
        return character;
    const char escaped = m_line.empty() ? '\0' : m_line.front();
    if (escaped == '\0' || std::string_view("\\\"nr").find(escaped) == std::string_view::npos)
        fail("a backslash that stands before neither \\, \", n nor r");
    m_line.remove_prefix(1);
    return std::string(1, escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped);
}

std::uint32_t RegistryLines::takeHexNumber(const char* otherwise) {
    std::uint32_t number = 0;
    const std::string_view digits = m_line.substr(0, kMostDigits);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    const auto length = static_cast<std::size_t>(end - digits.data());
    if (error != std::errc() || (m_line.size() > length && isHexDigit(m_line[length])))
        fail(otherwise);
    skip(length);
    return number;
}

std::string RegistryLines::takeHexBytes() {
    std::string bytes;
    for (bool isFirst = true;; isFirst = false) {
        skipToDigits();
        if (!isFirst && !isAtEnd())
            takeComma();
        if (isAtEnd())
            return bytes;
        bytes.push_back(takeHexByte());
    }
}

void RegistryLines::takeComma() {
    if (!startsWith(","))
        fail("a comma is missing between two bytes");
    skip(1);
    skipToDigits();
}

void RegistryLines::skipToDigits() {
    m_line = withoutBlanks(m_line);
    while (m_line == "\\") {
        if (!next())
            fail("the bytes go on behind the file's end");
    }
}

char RegistryLines::takeHexByte() {
    if (!isHexDigit(m_line[0]))
        fail("a byte is not written as hexadecimal digits");
    const std::size_t length = m_line.size() > 1 && isHexDigit(m_line[1]) ? 2 : 1;
    const char byte = *byteOfHex(m_line.substr(0, length));
    m_line.remove_prefix(length);
    return byte;
}

void RegistryLines::expectEnd() {
    if (!isAtEnd())
        fail("something stands behind the value's data");
}

}  // namespace simwin
