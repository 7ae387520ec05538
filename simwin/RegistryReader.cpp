#include "simwin/RegistryReader.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>
#include <vector>

#include "simwin/CodePage.h"

namespace simwin {
namespace {

constexpr std::size_t kLargestFile = std::size_t{64} << 20;
constexpr std::size_t kLongestKeyName = 255;
constexpr std::size_t kLongestValueName = 16383;
constexpr std::ptrdiff_t kDeepestKey = 512;
constexpr std::size_t kMostKeys = 500000;
constexpr std::size_t kMostValues = 1000000;
constexpr std::size_t kMaximumTypeDigits = 8;

constexpr std::string_view kVersion5 = "Windows Registry Editor Version 5.00";
constexpr std::string_view kVersion4 = "REGEDIT4";

std::string_view withoutTrailingBlanks(std::string_view line) {
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

std::string_view withoutBlanks(std::string_view line) {
    line = withoutTrailingBlanks(line);
    return line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
}

bool isHex(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

bool isTextType(std::uint32_t type) {
    const auto known = static_cast<RegistryType>(type);
    return known == RegistryType::Text || known == RegistryType::ExpandText || known == RegistryType::MultiText;
}

// The bytes of a file as text of the code page, whatever it is written in.
std::string decode(std::string_view content) {
    if (content.starts_with("\xFF\xFE"))
        return fromUtf16(content.substr(2));
    if (content.starts_with("\xEF\xBB\xBF"))
        content.remove_prefix(3);
    return isUtf8(content) ? fromUtf8Leniently(content) : std::string(content);
}

class Reader {
  public:
    Reader(std::string_view text, const std::string& fileName) : m_rest(text), m_fileName(fileName) {}

    RegistryTree read() {
        readHeader();
        while (nextLine())
            readLine();
        return std::move(m_tree);
    }

  private:
    [[noreturn]] void fail(const std::string& what) const {
        throw ReadError(m_fileName + ":" + std::to_string(m_lineNumber) + ": " + what);
    }

    bool nextLine() {
        if (m_rest.empty())
            return false;
        const std::size_t end = m_rest.find('\n');
        m_line = withoutBlanks(m_rest.substr(0, end));
        m_rest = end == std::string_view::npos ? std::string_view() : m_rest.substr(end + 1);
        ++m_lineNumber;
        return true;
    }

    void readHeader() {
        const bool hasLine = nextLine();
        m_isVersion5 = m_line == kVersion5;
        if (!hasLine || (!m_isVersion5 && m_line != kVersion4)) {
            m_lineNumber = 1;
            fail("the first line is neither \"" + std::string(kVersion5) + "\" nor \"" + std::string(kVersion4) + "\"");
        }
    }

    void readLine() {
        if (m_line.empty() || m_line.starts_with(';'))
            return;
        if (m_line.starts_with('['))
            readKey();
        else
            readValue();
    }

    void readKey() {
        if (!m_line.ends_with(']'))
            fail("the key's closing bracket is missing");
        const std::string_view path = m_line.substr(1, m_line.size() - 2);
        if (path.starts_with('-'))
            fail("a key that is to be removed; a station is described by what is there");
        checkPath(path);
        m_key = m_tree.create(path);
        if (!m_key)
            fail("the key's path has an empty piece");
        if (m_tree.size() > kMostKeys)
            fail("more than 500000 keys");
    }

    void checkPath(std::string_view path) const {
        if (!splitHive(path))
            fail("the key begins with no hive's full name, such as HKEY_LOCAL_MACHINE");
        if (std::count(path.begin(), path.end(), '\\') > kDeepestKey)
            fail("the key lies deeper than 512 levels");
        for (std::size_t begin = 0; begin < path.size();) {
            const std::size_t end = std::min(path.find('\\', begin), path.size());
            if (end - begin > kLongestKeyName)
                fail("a key's name is longer than 255 characters");
            begin = end + 1;
        }
    }

    void readValue() {
        RegistryValue value;
        value.name = takeName();
        if (!m_key)
            fail("a value before the first key");
        m_line = withoutBlanks(m_line);
        if (!m_line.starts_with('='))
            fail("\"=\" is missing behind the value's name");
        m_line = withoutBlanks(m_line.substr(1));
        readData(value);
        if (++m_values > kMostValues)
            fail("more than 1000000 values");
        m_tree.set(*m_key, std::move(value));
    }

    std::string takeName() {
        if (m_line.starts_with('@')) {
            m_line.remove_prefix(1);
            return {};
        }
        if (!m_line.starts_with('"'))
            fail("neither a key in brackets nor a value's name in quotes");
        std::string name = takeQuoted();
        if (name.size() > kLongestValueName)
            fail("a value's name is longer than 16383 characters");
        return name;
    }

    // A text in quotes at the start of the line, which then begins behind it. A line's end within it belongs to it.
    std::string takeQuoted() {
        std::string text;
        const std::size_t firstLine = m_lineNumber;
        m_line.remove_prefix(1);
        while (!m_line.starts_with('"')) {
            if (m_line.empty()) {
                if (!nextRawLine()) {
                    m_lineNumber = firstLine;
                    fail("the closing quote is missing");
                }
                text += "\r\n";
            } else {
                text.push_back(takeCharacter());
            }
        }
        m_line.remove_prefix(1);
        return text;
    }

    // The next line with the blanks at its ends.
    bool nextRawLine() {
        const std::string_view before = m_rest;
        if (!nextLine())
            return false;
        m_line = before.substr(0, before.find('\n'));
        if (m_line.ends_with('\r'))
            m_line.remove_suffix(1);
        return true;
    }

    char takeCharacter() {
        char character = m_line.front();
        m_line.remove_prefix(1);
        if (character != '\\')
            return character;
        const char escaped = m_line.empty() ? '\0' : m_line.front();
        switch (escaped) {
            case '\\':
            case '"':
                character = escaped;
                break;
            case 'n':
                character = '\n';
                break;
            case 'r':
                character = '\r';
                break;
            default:
                fail("a backslash that stands before neither \\, \", n nor r");
        }
        m_line.remove_prefix(1);
        return character;
    }

    void readData(RegistryValue& value) {
        if (m_line.starts_with('"')) {
            value.type = static_cast<std::uint32_t>(RegistryType::Text);
            value.bytes = takeQuoted() + '\0';
            checkEnd();
        } else if (m_line.starts_with("dword:")) {
            value = dwordValue(value.name, takeDword());
        } else if (m_line.starts_with("hex")) {
            value.type = takeHexType();
            value.bytes = takeHexBytes();
            if (m_isVersion5 && isTextType(value.type))
                value.bytes = fromUtf16(value.bytes);
        } else if (m_line.starts_with('-')) {
            fail("a value that is to be removed; a station is described by what is there");
        } else {
            fail("data that is neither a text in quotes nor dword: nor hex:");
        }
    }

    void checkEnd() {
        m_line = withoutBlanks(m_line);
        if (!m_line.empty() && !m_line.starts_with(';'))
            fail("something stands behind the value's data");
    }

    std::uint32_t takeDword() {
        m_line.remove_prefix(std::string_view("dword:").size());
        std::uint32_t number = 0;
        const auto [end, error] = std::from_chars(m_line.data(), m_line.data() + m_line.size(), number, 16);
        if (error != std::errc())
            fail("dword: stands before no hexadecimal number of up to 8 digits");
        m_line.remove_prefix(static_cast<std::size_t>(end - m_line.data()));
        checkEnd();
        return number;
    }

    // "hex:" is binary; the number in "hex(7):" is hexadecimal.
    std::uint32_t takeHexType() {
        m_line.remove_prefix(3);
        auto type = static_cast<std::uint32_t>(RegistryType::Binary);
        if (m_line.starts_with('(')) {
            const std::size_t end = m_line.find(')');
            const std::string_view digits = m_line.substr(1, end == std::string_view::npos ? end : end - 1);
            const auto [last, error] = std::from_chars(digits.data(), digits.data() + digits.size(), type, 16);
            if (end == std::string_view::npos || error != std::errc() || last != digits.data() + digits.size() ||
                digits.size() > kMaximumTypeDigits)
                fail("hex( stands before no hexadecimal type number and \")\"");
            m_line.remove_prefix(end + 1);
        }
        if (!m_line.starts_with(':'))
            fail("\":\" is missing behind hex");
        m_line.remove_prefix(1);
        return type;
    }

    std::string takeHexBytes() {
        std::string bytes;
        for (bool first = true;; first = false) {
            skipToDigits();
            if (m_line.empty() || m_line.starts_with(';'))
                return bytes;
            if (!first)
                takeComma();
            if (m_line.empty() || m_line.starts_with(';'))
                return bytes;
            bytes.push_back(takeHexByte());
        }
    }

    void takeComma() {
        if (!m_line.starts_with(','))
            fail("a comma is missing between two bytes");
        m_line.remove_prefix(1);
        skipToDigits();
    }

    // A backslash at the line's end continues the bytes on the next line.
    void skipToDigits() {
        m_line = withoutBlanks(m_line);
        while (m_line == "\\") {
            if (!nextLine())
                fail("the bytes go on behind the file's end");
        }
    }

    char takeHexByte() {
        if (!isHex(m_line[0]))
            fail("a byte is not written as hexadecimal digits");
        const std::size_t length = m_line.size() > 1 && isHex(m_line[1]) ? 2 : 1;
        unsigned byte = 0;
        std::from_chars(m_line.data(), m_line.data() + length, byte, 16);
        m_line.remove_prefix(length);
        return static_cast<char>(static_cast<unsigned char>(byte));
    }

    std::string_view m_rest;
    std::string_view m_line;
    std::size_t m_lineNumber = 0;
    const std::string& m_fileName;
    bool m_isVersion5 = false;
    RegistryTree m_tree;
    std::optional<KeyId> m_key;
    std::size_t m_values = 0;
};

}  // namespace

RegistryTree readRegistry(std::string_view content, const std::string& fileName) {
    if (content.size() > kLargestFile)
        throw ReadError(fileName + ": larger than 64 MiB");
    const std::string text = decode(content);
    return Reader(text, fileName).read();
}

}  // namespace simwin
