#include "simwin/RegistryReader.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "simwin/CodePage.h"
#include "simwin/ReadFile.h"
#include "simwin/RegistryLines.h"

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

// The bytes of a file as text of the code page, whatever it is written in.
std::string decode(std::string_view content) {
    if (content.starts_with("\xFF\xFE"))
        return fromUtf16(withoutMarks(content, "\xFF\xFE", {"\n\0", 2}));
    const std::string text = withoutMarks(content, "\xEF\xBB\xBF", "\n");
    return isUtf8(text) ? fromUtf8Leniently(text) : text;
}

class Reader {
  public:
    Reader(std::string_view text, const std::string& fileName) : m_lines(text, fileName) {}

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
        if (!endsWithCharacter(line, ']'))
            m_lines.fail("the key's closing bracket is missing");
        const std::string_view path = line.substr(1, line.size() - 2);
        if (path.starts_with('-'))
            m_lines.fail(std::string("a key") + kRemoval);
        checkPath(path);
        m_key = m_tree.create(path);
        if (!m_key)
            m_lines.fail("the key's path has an empty piece");
        if (m_tree.size() > kMostKeys)
            m_lines.fail("more than 500000 keys");
    }

    void checkPath(std::string_view path) const {
        if (!splitHive(path))
            m_lines.fail("the key begins with no hive's full name, such as HKEY_LOCAL_MACHINE");
        std::size_t depth = 0;
        for (std::size_t begin = 0; begin < path.size(); ++depth) {
            const std::size_t end = std::min(findCharacter(path, '\\', begin), path.size());
            if (isLongerThan(path.substr(begin, end - begin), kLongestKeyName))
                m_lines.fail("a key's name is longer than 255 characters");
            begin = end + 1;
        }
        if (depth > kDeepestKey + 1)
            m_lines.fail("the key lies deeper than 512 levels");
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
        std::string name = m_lines.takeQuoted();
        if (isLongerThan(name, kLongestValueName))
            m_lines.fail("a value's name is longer than 16383 characters");
        return name;
    }

    void readData(RegistryValue& value) {
        if (m_lines.startsWith("\"")) {
            value = textValue(value.name, m_lines.takeQuoted());
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

    RegistryLines m_lines;
    bool m_isVersion5 = false;
    RegistryTree m_tree;
    std::optional<KeyId> m_key;
    std::size_t m_values = 0;
};

}  // namespace

RegistryTree readRegistry(std::string_view content, const std::string& fileName) {
    if (content.size() > kLargestExport)
        throw tooLong(fileName, kLargestExport);
    const std::string text = decode(content);
    return Reader(text, fileName).read();
}

}  // namespace simwin
