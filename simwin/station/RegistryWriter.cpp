#include "simwin/station/RegistryWriter.h"

#include <algorithm>
#include <string_view>

#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace simwin {
namespace {

constexpr std::size_t kLongestLine = 77;  // before the backslash that continues it

std::string quoted(std::string_view utf8) {
    std::string line = "\"";
    for (const char character : utf8) {
        if (character == '\n' || character == '\r') {
            line += character == '\n' ? "\\n" : "\\r";
            continue;
        }
        if (character == '"' || character == '\\')
            line += '\\';
        line += character;
    }
    return line + '"';
}

// A text that ends with its only NUL, and holds nothing that a line could not show.
bool isPlainText(const RegistryValue& value) {
    const std::string_view bytes = value.bytes;
    return static_cast<RegistryType>(value.type) == RegistryType::Text && !bytes.empty() && bytes.back() == '\0' &&
           std::none_of(bytes.begin(), bytes.end() - 1, isControl) && survivesUtf8(bytes);
}

bool hasOnlyCharacters(const RegistryTree& tree, KeyId key) {
    return std::ranges::all_of(
               tree.values(key),
               [](const RegistryValue& value) { return !isText(value) || survivesUtf8(value.bytes); }) &&
           std::ranges::all_of(tree.subKeys(key), [&](KeyId subKey) { return hasOnlyCharacters(tree, subKey); });
}

class Writer {
  public:
    // A form whose texts are wide, as Windows NT's; the other one's are bytes of the code page.
    Writer(const RegistryTree& tree, bool isWide) : m_tree(tree), m_isWide(isWide) {}

    std::string write() {
        m_text = m_isWide ? "Windows Registry Editor Version 5.00\n" : "REGEDIT4\n";
        for (const Hive hive : kOwnHives) {
            const KeyId root = m_tree.root(hive);
            if (m_tree.value(root, 0) != nullptr)
                appendKey(root);
            appendSubKeys(root);
        }
        return std::move(m_text);
    }

  private:
    std::string hexData(const RegistryValue& value, std::size_t column) const {
        const bool isBinary = value.type == static_cast<std::uint32_t>(RegistryType::Binary);
        std::string text = isBinary ? "hex:" : "hex(" + hexDigits(value.type) + "):";
        column += text.size();
        const std::string bytes = m_isWide && isText(value) ? toUtf16Bytes(value.bytes) : value.bytes;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const bool isLast = i + 1 == bytes.size();
            if (column + 3 > kLongestLine && i != 0) {
                text += "\\\n  ";
                column = 2;
            }
            text += hexDigits(static_cast<unsigned char>(bytes[i]), 2) + (isLast ? "" : ",");
            column += 3;
        }
        return text;
    }

    void appendValue(const RegistryValue& value) {
        const std::string name = value.name.empty() ? "@" : simwin::quoted(toProperUtf8(value.name));
        m_text += name + "=";
        if (isPlainText(value)) {
            m_text += simwin::quoted(toUtf8(std::string_view(value.bytes).substr(0, value.bytes.size() - 1)));
        } else if (static_cast<RegistryType>(value.type) == RegistryType::DWord && value.bytes.size() == 4) {
            m_text += "dword:";
            for (std::size_t i = 4; i-- > 0;)
                m_text += hexDigits(static_cast<unsigned char>(value.bytes[i]), 2);
        } else {
            m_text += hexData(value, name.size() + 1);
        }
        m_text += "\n";
    }

    void appendKey(KeyId key) {
        m_text += "\n[" + toProperUtf8(m_tree.path(key)) + "]\n";
        for (const RegistryValue& value : m_tree.values(key))
            appendValue(value);
    }

    void appendSubKeys(KeyId key) {
        for (const KeyId subKey : m_tree.subKeys(key)) {
            appendKey(subKey);
            appendSubKeys(subKey);
        }
    }

    const RegistryTree& m_tree;
    bool m_isWide;
    std::string m_text;
};

}  // namespace

std::string writeRegistry(const RegistryTree& tree) {
    const bool isWide =
        std::ranges::all_of(kOwnHives, [&](Hive hive) { return hasOnlyCharacters(tree, tree.root(hive)); });
    return Writer(tree, isWide).write();
}

}  // namespace simwin
