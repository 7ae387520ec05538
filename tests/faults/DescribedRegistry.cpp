#include "tests/faults/DescribedRegistry.h"

#include <algorithm>

#include "simwin/text/CodePage.h"

namespace kvtest {
namespace {

using simwin::Hive;
using simwin::KeyId;
using simwin::RegistryType;
using simwin::RegistryValue;

bool isOf(const RegistryValue& value, RegistryType type) {
    return value.type == static_cast<std::uint32_t>(type);
}

std::string firstText(const std::string& bytes) {
    return bytes.substr(0, bytes.find('\0'));
}

std::vector<std::string> itemsOf(const std::string& bytes) {
    std::vector<std::string> items;
    for (std::size_t start = 0; start < bytes.size() && bytes[start] != '\0';) {
        items.push_back(firstText(bytes.substr(start)));
        start += items.back().size() + 1;
    }
    return items;
}

std::string joined(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : "//") + item;
    return text;
}

// One character with a zero byte behind it, and then more: UTF-16.
bool isWide(const std::string& bytes) {
    return bytes.size() > 2 && firstText(bytes).size() == 1 && bytes[2] != '\0';
}

// The names of the keys on a path, whose characters may hold the byte of a backslash.
std::vector<std::string> namesOn(std::string_view path) {
    std::vector<std::string> names;
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(simwin::findCharacter(path, '\\', start), path.size());
        if (end > start)
            names.emplace_back(path.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

}  // namespace

std::string upperCase(std::string text) {
    simwin::makeUpperCase(text.data());
    return text;
}

std::string lowerCase(std::string text) {
    simwin::makeLowerCase(text.data());
    return text;
}

std::vector<std::string> split(const std::string& text, std::string_view delimiters) {
    std::vector<std::string> pieces;
    for (std::size_t start = text.find_first_not_of(delimiters); start != std::string::npos;) {
        const std::size_t end = text.find_first_of(delimiters, start);
        pieces.push_back(text.substr(start, end - start));
        start = text.find_first_not_of(delimiters, end);
    }
    return pieces;
}

DescribedRegistry::Keys DescribedRegistry::keysAt(std::string_view pattern) const {
    Keys keys = {m_tree.root(Hive::LocalMachine)};
    for (const std::string& piece : namesOn(pattern)) {
        Keys next;
        for (const KeyId key : keys) {
            if (const auto found = m_tree.find(key, piece); found && piece != "*")
                next.push_back(*found);
            const std::string* name = nullptr;
            for (std::size_t i = 0; piece == "*" && (name = m_tree.subKeyName(key, i)) != nullptr; ++i)
                next.push_back(*m_tree.find(key, *name));
        }
        keys = std::move(next);
    }
    return keys;
}

DescribedRegistry::Keys DescribedRegistry::devicesAt(std::string_view pattern, std::string_view deviceClass) const {
    Keys keys = keysAt(pattern);
    std::erase_if(keys, [&](KeyId key) { return lowerCase(text(key, "Class").value_or("")) != deviceClass; });
    return keys;
}

std::optional<std::string> DescribedRegistry::text(KeyId key, std::string_view valueName) const {
    const RegistryValue* value = m_tree.findValue(key, valueName);
    if (value == nullptr)
        return std::nullopt;
    if (isOf(*value, RegistryType::MultiText))
        return joined(itemsOf(value->bytes));
    if (!isOf(*value, RegistryType::Text) && !isOf(*value, RegistryType::Binary))
        return std::nullopt;
    return firstText(isWide(value->bytes) ? simwin::fromUtf16(value->bytes) : value->bytes);
}

std::optional<std::string> DescribedRegistry::text(std::string_view path, std::string_view value) const {
    const Keys keys = keysAt(path);
    return keys.empty() ? std::nullopt : text(keys.front(), value);
}

std::vector<std::string> DescribedRegistry::list(std::string_view path, std::string_view valueName) const {
    const Keys keys = keysAt(path);
    const RegistryValue* value = keys.empty() ? nullptr : m_tree.findValue(keys.front(), valueName);
    return value != nullptr ? itemsOf(value->bytes) : std::vector<std::string>();
}

std::vector<std::string> DescribedRegistry::subKeyNames(std::string_view path) const {
    std::vector<std::string> names;
    const std::string* name = nullptr;
    for (const KeyId key : keysAt(path)) {
        for (std::size_t i = 0; (name = m_tree.subKeyName(key, i)) != nullptr; ++i)
            names.push_back(*name);
    }
    return names;
}

std::vector<std::string> DescribedRegistry::valueNames(Hive hive, std::string_view path) const {
    std::vector<std::string> names;
    const auto key = m_tree.find(m_tree.root(hive), path);
    const RegistryValue* value = nullptr;
    for (std::size_t i = 0; key && (value = m_tree.value(*key, i)) != nullptr; ++i)
        names.push_back(value->name);
    return names;
}

}  // namespace kvtest
