#include "simwin/station/RegistryReader.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "simwin/station/RegistryLines.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/ReadFile.h"

namespace simwin {
namespace {

constexpr std::size_t kLongestKeyName = 255;
constexpr std::size_t kLongestValueName = 16383;
constexpr std::size_t kDeepestKey = 512;  // below its hive
constexpr std::size_t kMostKeys = 500000;
constexpr std::size_t kMostValues = 1000000;

constexpr std::string_view kVersion5 = "Windows Registry Editor Version 5.00";
constexpr std::string_view kVersion4 = "REGEDIT4";

constexpr const char* kRemoval = " that is to be removed; a station is described by what is there";

// In characters of the registry, which counts in UTF-16.
bool isLongerThan(std::string_view name, std::size_t limit) {
    return name.size() > limit && toUtf16(name).size() > limit;
}

// The content without the byte-order marks that stand at its start and, where exports were put together, at a line's.
std::string withoutMarks(std::string_view content, std::string_view mark, std::string_view lineEnd) {
    if (content.starts_with(mark))
        content.remove_prefix(mark.size());
    const std::string inside = std::string(lineEnd) + std::string(mark);
    std::string text;
    text.reserve(content.size());
    for (std::size_t place = 0; (place = content.find(inside)) != std::string_view::npos;) {
        text += content.substr(0, place + lineEnd.size());
        content.remove_prefix(place + inside.size());
    }
    return text += content;
}

struct Decoded {
    std::string text;
    bool isUtf8;  // false: text of the code page
};

// Names and texts become text of the code page one by one: a letter of the file can become a backslash or a quote
// there.
Decoded decode(std::string_view content) {
    if (content.starts_with("\xFF\xFE"))
        return {utf8FromUtf16(utf16FromBytes(withoutMarks(content, "\xFF\xFE", {"\n\0", 2}))), true};
    std::string text = withoutMarks(content, "\xEF\xBB\xBF", "\n");
    const bool isProper = isUtf8(text);
    return {std::move(text), isProper};
}

class Reader {
  public:
    Reader(const Decoded& content, const std::string& fileName)
        : m_lines(content.text, content.isUtf8, fileName), m_isUtf8(content.isUtf8) {}

    RegistryTree read() {
        readHeader();
        while (m_lines.next())
            readLine();
        return std::move(m_tree);
    }

  private:
    void readHeader() {
        m_lines.next();
        if (!takeHeader())
            m_lines.fail("the first line is neither \"" + std::string(kVersion5) + "\" nor \"" +
                         std::string(kVersion4) + "\"");
    }

    // What follows is in the header's form, until another export put behind begins with its own.
    bool takeHeader() {
        const bool isVersion5 = m_lines.line() == kVersion5;
        if (!isVersion5 && m_lines.line() != kVersion4)
            return false;
        m_isVersion5 = isVersion5;
        return true;
    }

    void readLine() {
        if (m_lines.line().empty() || m_lines.startsWith(";") || takeHeader())
            return;
        if (m_lines.startsWith("["))
            readKey(m_lines.line());
        else
            readValue();
    }

    void readKey(std::string_view line) {
        if (m_isUtf8 ? !line.ends_with(']') : !endsWithCharacter(line, ']'))
            m_lines.fail("the key's closing bracket is missing");
        const std::string_view path = line.substr(1, line.size() - 2);
        if (path.starts_with('-'))
            m_lines.fail(std::string("a key") + kRemoval);
        if (!splitHive(path))
            m_lines.fail("the key begins with no hive's full name, such as HKEY_LOCAL_MACHINE");
        m_key = m_tree.create(pathInCodePage(path));
        if (!m_key)
            m_lines.fail("the key's path has an empty piece");
        if (m_tree.size() > kMostKeys)
            m_lines.fail("more than 500000 keys");
    }

    std::string pathInCodePage(std::string_view path) const {
        std::string all;
        std::size_t depth = 0;
        for (std::size_t begin = 0; begin <= path.size(); ++depth) {
            const std::size_t found = m_isUtf8 ? path.find('\\', begin) : findCharacter(path, '\\', begin);
            const std::size_t end = std::min(found, path.size());
            all += (begin == 0 ? "" : "\\") + keyName(path.substr(begin, end - begin));
            begin = end + 1;
        }
        if (depth > kDeepestKey + 1)
            m_lines.fail("the key lies deeper than 512 levels");
        return all;
    }

    std::string keyName(std::string_view piece) const {
        std::string name = inCodePage(std::string(piece));
        if (isLongerThan(name, kLongestKeyName))
            m_lines.fail("a key's name is longer than 255 characters");
        if (findCharacter(name, '\\') != std::string::npos)
            m_lines.fail("a key's name has a character that is a backslash in code page " +
                         std::to_string(codePageInForce()));
        return name;
    }

    void readValue() {
        RegistryValue value;
        value.name = takeName();
        if (!m_key)
            m_lines.fail("a value before the first key");
        if (!m_lines.startsWith("="))
            m_lines.fail("\"=\" is missing behind the value's name");
        m_lines.skip(1);
        readData(value);
        m_lines.expectEnd();
        if (++m_values > kMostValues)
            m_lines.fail("more than 1000000 values");
        m_tree.set(*m_key, std::move(value));
    }

    std::string takeName() {
        if (m_lines.startsWith("@")) {
            m_lines.skip(1);
            return {};
        }
        if (!m_lines.startsWith("\""))
            m_lines.fail("neither a key in brackets nor a value's name in quotes");
        std::string name = inCodePage(m_lines.takeQuoted());
        if (isLongerThan(name, kLongestValueName))
            m_lines.fail("a value's name is longer than 16383 characters");
        return name;
    }

    void readData(RegistryValue& value) {
        if (m_lines.startsWith("\"")) {
            value = textValue(value.name, inCodePage(m_lines.takeQuoted()));
        } else if (m_lines.startsWith("dword:")) {
            m_lines.skip(std::string_view("dword:").size());
            value = dwordValue(value.name,
                               m_lines.takeHexNumber("dword: stands before no hexadecimal number of up to 8 digits"));
        } else if (m_lines.startsWith("hex")) {
            value.type = takeHexType();
            value.bytes = m_lines.takeHexBytes();
            if (m_isVersion5 && isText(value))
                value.bytes = fromUtf16(value.bytes);
        } else {
            m_lines.fail(m_lines.startsWith("-") ? std::string("a value") + kRemoval
                                                 : "data that is neither a text in quotes nor dword: nor hex:");
        }
    }

    // "hex:" is binary; the number in "hex(7):" is hexadecimal.
    std::uint32_t takeHexType() {
        constexpr const char* kNoType = "hex( stands before no hexadecimal type number and \")\"";
        auto type = static_cast<std::uint32_t>(RegistryType::Binary);
        m_lines.skip(3);
        if (m_lines.startsWith("(")) {
            m_lines.skip(1);
            type = m_lines.takeHexNumber(kNoType);
            if (!m_lines.startsWith(")"))
                m_lines.fail(kNoType);
            m_lines.skip(1);
        }
        if (!m_lines.startsWith(":"))
            m_lines.fail("\":\" is missing behind hex");
        m_lines.skip(1);
        return type;
    }

    std::string inCodePage(std::string text) const { return m_isUtf8 ? fromUtf8Leniently(text) : text; }

    RegistryLines m_lines;
    bool m_isUtf8;
    bool m_isVersion5 = false;
    RegistryTree m_tree;
    std::optional<KeyId> m_key;
    std::size_t m_values = 0;
};

}  // namespace

RegistryTree readRegistry(std::string_view content, const std::string& fileName) {
    if (content.size() > kLargestExport)
        throw tooLong(fileName, kLargestExport);
    const Decoded decoded = decode(content);
    return Reader(decoded, fileName).read();
}

}  // namespace simwin
