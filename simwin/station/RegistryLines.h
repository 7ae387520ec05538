// The lines of a registry export, and the pieces that a line is made of.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace simwin {

// A place in an export: the rest of one line, without blanks at its ends, and the lines behind it. Every reader takes
// its piece off the start of the line, and throws ReadError with the place when the piece is not as it should be.
class RegistryLines {
  public:
    // The text is UTF-8, or else of the ANSI code page in force. It and the name must outlive this object.
    RegistryLines(std::string_view text, bool isUtf8, const std::string& fileName)
        : m_rest(text), m_isUtf8(isUtf8), m_fileName(fileName) {}

    // False behind the last line.
    bool next();
    std::string_view line() const { return m_line; }
    bool startsWith(std::string_view text) const { return m_line.starts_with(text); }
    void skip(std::size_t count);

    [[noreturn]] void fail(const std::string& what) const;

    // A text in quotes; it may go over the line's end. A backslash stands before \, ", n or r.
    std::string takeQuoted();
    // Up to 8 hexadecimal digits, of which there must be one; `otherwise` is the error.
    std::uint32_t takeHexNumber(const char* otherwise);
    // Bytes of one or two hexadecimal digits between commas, continued by a backslash at a line's end.
    std::string takeHexBytes();
    // Nothing but a comment may stand behind a value's data.
    void expectEnd();

  private:
    bool nextRaw();
    std::string takeCharacter();
    std::size_t lengthOfNext() const;
    char takeHexByte();
    void takeComma();
    void skipToDigits();
    bool isAtEnd() const { return m_line.empty() || m_line.starts_with(';'); }

    std::string_view m_rest;
    std::string_view m_line;
    bool m_isUtf8;
    std::size_t m_number = 0;
    const std::string& m_fileName;
};

}  // namespace simwin
