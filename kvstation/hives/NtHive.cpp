#include "kvstation/hives/NtHive.h"

#include <hivex.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "kvstation/hives/BaseBlock.h"
#include "kvstation/hives/LittleEndian.h"
#include "kvstation/platform/Errors.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

// In a key, counted from its cell.
constexpr std::size_t kSubKeyCount = 24;
constexpr std::size_t kSubKeyList = 32;
constexpr std::size_t kValueCount = 40;

struct Free {
    void operator()(void* block) const { std::free(block); }
};
template <class Item>
using Allocated = std::unique_ptr<Item, Free>;

enum class NameState { Text, NoText, Lost };

struct Name {
    NameState state;
    std::string text;
};

// Names are UTF-16 or Latin 1 in the file, and UTF-8 here. Half of a surrogate pair is no text.
Name nameOf(const Allocated<char>& text, std::size_t length) {
    if (!text)
        return {errno == EILSEQ || errno == EINVAL ? NameState::NoText : NameState::Lost, {}};
    if (std::strlen(text.get()) != length)
        return {NameState::NoText, {}};
    return {NameState::Text, simwin::fromUtf8Leniently(text.get())};
}

Name keyName(hive_h* hive, hive_node_h key) {
    return nameOf(Allocated<char>(hivex_node_name(hive, key)), hivex_node_name_len(hive, key));
}

Name valueName(hive_h* hive, hive_value_h value) {
    return nameOf(Allocated<char>(hivex_value_key(hive, value)), hivex_value_key_len(hive, value));
}

std::optional<simwin::RegistryValue> readValue(hive_h* hive, hive_value_h place, std::string name) {
    hive_type type{};
    std::size_t size = 0;
    const Allocated<char> bytes(hivex_value_value(hive, place, &type, &size));
    if (!bytes)
        return std::nullopt;
    simwin::RegistryValue value{std::move(name), 0, std::string(bytes.get(), size)};
    // Programs store types of their own, which the enumeration does not have.
    static_assert(sizeof type == sizeof value.type);
    std::memcpy(&value.type, &type, sizeof value.type);
    if (simwin::isText(value))
        value.bytes = simwin::fromUtf16(value.bytes);
    return value;
}

}  // namespace

void NtHive::Close::operator()(hive_h* hive) const {
    hivex_close(hive);
}

NtHive::NtHive(std::string bytes, const std::string& path) : m_bytes(std::move(bytes)), m_file(m_bytes, path) {
    m_hive.reset(hivex_open(m_file.path().c_str(), HIVEX_OPEN_UNSAFE));
    if (!m_hive)
        throw Failure(path + " is a registry hive that is damaged beyond use: " + std::strerror(errno));
    m_root = hivex_root(m_hive.get());
    if (m_root == 0)
        throw Failure(path + " is a registry hive that is damaged beyond use: it has no root key");
}

std::uint32_t NtHive::numberOf(Node key, std::size_t place) const {
    return numberAt(m_bytes, key + place);
}

// A list of lists that are lists of lists themselves, of which Windows makes none and which a short file can have in
// endless number.
bool NtHive::hasNestedList(Node key) const {
    constexpr std::string_view kListOfLists = "ri";
    const std::string_view bytes = m_bytes;
    const auto listAt = [&](std::size_t place) {
        const std::size_t cell = kBaseBlock + numberAt(bytes, place) + 4;
        return cell < bytes.size() ? bytes.substr(cell) : std::string_view();
    };
    const std::string_view list = listAt(key + kSubKeyList);
    if (!list.starts_with(kListOfLists))
        return false;
    const auto first = static_cast<std::size_t>(list.data() - bytes.data()) + 4;
    for (std::size_t i = 0; i < numberAt<std::uint16_t>(list, 2); ++i)
        if (listAt(first + i * 4).starts_with(kListOfLists))
            return true;
    return false;
}

Hive::SubKeys NtHive::readSubKeys(Node key) const {
    const Allocated<hive_node_h> children(hasNestedList(key) ? nullptr : hivex_node_children(m_hive.get(), key));
    SubKeys found;
    std::size_t count = 0;
    for (const hive_node_h* child = children.get(); child != nullptr && *child != 0; ++child, ++count) {
        Name name = keyName(m_hive.get(), *child);
        found.isWhole = found.isWhole && name.state != NameState::Lost;
        if (name.state == NameState::Text && fitsPath(name.text))
            found.all.push_back({std::move(name.text), *child});
    }
    found.isWhole = found.isWhole && children != nullptr && count == numberOf(key, kSubKeyCount);
    return found;
}

const Hive::SubKeys& NtHive::subKeys(Node key) {
    const auto [place, isNew] = m_subKeys.try_emplace(key);
    if (isNew)
        place->second = readSubKeys(key);
    return place->second;
}

Hive::Values NtHive::values(Node key) {
    const Allocated<hive_value_h> places(hivex_node_values(m_hive.get(), key));
    Values found;
    std::size_t count = 0;
    for (const hive_value_h* place = places.get(); place != nullptr && *place != 0; ++place, ++count) {
        // The library tells one that is none by the same error as a name that is no text.
        const bool isValue = std::string_view(m_bytes).substr(std::min(*place + 4, m_bytes.size())).starts_with("vk");
        Name name = isValue ? valueName(m_hive.get(), *place) : Name{NameState::Lost, {}};
        if (name.state == NameState::NoText)
            continue;
        std::optional<simwin::RegistryValue> value;
        if (name.state == NameState::Text)
            value = readValue(m_hive.get(), *place, std::move(name.text));
        if (value)
            found.all.push_back(std::move(*value));
        found.isWhole = found.isWhole && value.has_value();
    }
    found.isWhole = found.isWhole && places != nullptr && count == numberOf(key, kValueCount);
    return found;
}

}  // namespace kvstation
