#include "simwin/RegistryWriter.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "simwin/CodePage.h"

namespace simwin {
namespace {

constexpr std::size_t kLongestLine = 77;  // before the backslash that continues it

constexpr Hive kWrittenHives[] = {Hive::LocalMachine,  Hive::CurrentUser, Hive::Users,
                                  Hive::CurrentConfig, Hive::DynData,     Hive::PerformanceData};

std::string quoted(std::string_view text) {
    std::string line = "\"";
    for (const char character : text) {
        if (character == '\n' || character == '\r') {
            line += character == '\n' ? "\\n" : "\\r";
            continue;
        }
        if (character == '"' || character == '\\')
            line += '\\';
        appendUtf8(line, toUnicode(character));
    }
    return line + '"';
}

std::string hexByte(unsigned byte) {
    std::array<char, 4> digits{};
    std::snprintf(digits.data(), digits.size(), "%02x", byte);
    return digits.data();
}

bool isTextType(RegistryType type) {
    return type == RegistryType::Text || type == RegistryType::ExpandText || type == RegistryType::MultiText;
}

// Wide where Windows' own export is.
std::string dataBytes(const RegistryValue& value) {
    if (!isTextType(static_cast<RegistryType>(value.type)))
        return value.bytes;
    std::string wide;
    for (const char character : value.bytes) {
        const char16_t unit = toUnicode(character);
        wide.push_back(static_cast<char>(unit & 0xFF));
        wide.push_back(static_cast<char>(unit >> 8));
    }
    return wide;
}

std::string hexData(const RegistryValue& value, std::size_t column) {
    std::array<char, 24> type{};
    if (value.type != static_cast<std::uint32_t>(RegistryType::Binary))
        std::snprintf(type.data(), type.size(), "(%x)", static_cast<unsigned>(value.type));
    std::string text = "hex" + std::string(type.data()) + ":";
    column += text.size();
    const std::string bytes = dataBytes(value);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool isLast = i + 1 == bytes.size();
        if (column + 3 > kLongestLine && i != 0) {
            text += "\\\n  ";
            column = 2;
        }
        text += hexByte(static_cast<unsigned char>(bytes[i])) + (isLast ? "" : ",");
        column += 3;
    }
    return text;
}

// A text that ends with its only NUL, and holds nothing that a line could not show.
bool isPlainText(const RegistryValue& value) {
    const std::string_view bytes = value.bytes;
    return static_cast<RegistryType>(value.type) == RegistryType::Text && !bytes.empty() && bytes.back() == '\0' &&
           std::none_of(bytes.begin(), bytes.end() - 1, isControl);
}

std::string valueLine(const RegistryValue& value) {
    const std::string name = value.name.empty() ? "@" : simwin::quoted(value.name);
    if (isPlainText(value))
        return name + "=" + quoted(std::string_view(value.bytes).substr(0, value.bytes.size() - 1)) + "\n";
    if (static_cast<RegistryType>(value.type) == RegistryType::DWord && value.bytes.size() == 4) {
        std::string digits;
        for (std::size_t i = 4; i-- > 0;)
            digits += hexByte(static_cast<unsigned char>(value.bytes[i]));
        return name + "=dword:" + digits + "\n";
    }
    return name + "=" + hexData(value, name.size() + 1) + "\n";
}

void appendKey(std::string& text, const RegistryTree& tree, KeyId key) {
    text += "\n[" + toUtf8(tree.path(key)) + "]\n";
    for (std::size_t i = 0; const RegistryValue* value = tree.value(key, i); ++i)
        text += valueLine(*value);
}

void appendSubKeys(std::string& text, const RegistryTree& tree, KeyId key) {
    for (std::size_t i = 0; const std::string* name = tree.subKeyName(key, i); ++i) {
        const KeyId subKey = *tree.find(key, *name);
        appendKey(text, tree, subKey);
        appendSubKeys(text, tree, subKey);
    }
}

}  // namespace

std::string writeRegistry(const RegistryTree& tree) {
    std::string text = "Windows Registry Editor Version 5.00\n";
    for (const Hive hive : kWrittenHives) {
        const KeyId root = tree.root(hive);
        if (tree.value(root, 0) != nullptr)
            appendKey(text, tree, root);
        appendSubKeys(text, tree, root);
    }
    return text;
}

}  // namespace simwin
