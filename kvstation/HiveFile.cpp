#include "kvstation/HiveFile.h"

#include <hivex.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "kvstation/Errors.h"
#include "kvstation/HiveHeader.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestKeyName = 255;

struct Free {
    void operator()(void* block) const { std::free(block); }
};
template <class Item>
using Allocated = std::unique_ptr<Item, Free>;

bool isTextType(std::uint32_t type) {
    const auto known = static_cast<simwin::RegistryType>(type);
    return known == simwin::RegistryType::Text || known == simwin::RegistryType::ExpandText ||
           known == simwin::RegistryType::MultiText;
}

// A path could not tell such a name from two keys, and no registry file could hold it.
bool fitsPath(std::string_view name) {
    return !name.empty() && name.size() <= kLongestKeyName && name.find('\\') == std::string_view::npos &&
           std::ranges::none_of(name, simwin::isControl);
}

}  // namespace

void HiveFile::Close::operator()(hive_h* hive) const {
    hivex_close(hive);
}

HiveFile::HiveFile(std::string path) : m_path(std::move(path)), m_isDirty(checkHiveHeader(m_path)) {
    m_hive.reset(hivex_open(m_path.c_str(), 0));
    if (!m_hive)
        throw Failure(m_path + " is a damaged registry hive: " + std::strerror(errno));
    m_root = hivex_root(m_hive.get());
    if (m_root == 0)
        throw Failure(m_path + " is a damaged registry hive: it has no root key");
}

void HiveFile::fail(Node key, int error) const {
    const Allocated<char> name(hivex_node_name(m_hive.get(), key));
    throw Failure(
        m_path + ": the key " + (name ? "\"" + std::string(name.get()) + "\" " : "") + "at byte " +
        std::to_string(key) + " cannot be read: " +
        (error == ERANGE ? "it is too large" : std::string("the hive is damaged (") + std::strerror(error) + ")"));
}

// Names are UTF-16 or Latin 1 in the file, and UTF-8 here. Half of a surrogate pair is no text.
bool HiveFile::takeName(Node key, std::string& name) const {
    const Allocated<char> text(hivex_node_name(m_hive.get(), key));
    if (!text && errno != EILSEQ && errno != EINVAL)
        fail(key, errno);
    if (!text || std::strlen(text.get()) != hivex_node_name_len(m_hive.get(), key))
        return false;
    name = simwin::fromUtf8Leniently(text.get());
    return fitsPath(name);
}

bool HiveFile::takeValueName(Node key, std::size_t value, std::string& name) const {
    const Allocated<char> text(hivex_value_key(m_hive.get(), value));
    if (!text && errno != EILSEQ && errno != EINVAL)
        fail(key, errno);
    if (!text || std::strlen(text.get()) != hivex_value_key_len(m_hive.get(), value))
        return false;
    name = simwin::fromUtf8Leniently(text.get());
    return true;
}

const std::vector<HiveFile::SubKey>& HiveFile::subKeys(Node key) {
    const auto [place, isNew] = m_subKeys.try_emplace(key);
    if (!isNew)
        return place->second;
    const Allocated<hive_node_h> children(hivex_node_children(m_hive.get(), key));
    if (!children)
        fail(key, errno);
    for (const hive_node_h* child = children.get(); *child != 0; ++child)
        if (std::string name; takeName(*child, name))
            place->second.push_back({std::move(name), *child});
    return place->second;
}

std::vector<simwin::RegistryValue> HiveFile::values(Node key) const {
    const Allocated<hive_value_h> places(hivex_node_values(m_hive.get(), key));
    if (!places)
        fail(key, errno);
    std::vector<simwin::RegistryValue> all;
    for (const hive_value_h* place = places.get(); *place != 0; ++place) {
        simwin::RegistryValue value;
        if (!takeValueName(key, *place, value.name))
            continue;
        hive_type type{};
        std::size_t size = 0;
        const Allocated<char> bytes(hivex_value_value(m_hive.get(), *place, &type, &size));
        if (!bytes)
            fail(key, errno);
        // Programs store types of their own, which the enumeration does not have.
        static_assert(sizeof type == sizeof value.type);
        std::memcpy(&value.type, &type, sizeof value.type);
        value.bytes.assign(bytes.get(), size);
        if (isTextType(value.type))
            value.bytes = simwin::fromUtf16(value.bytes);
        all.push_back(std::move(value));
    }
    return all;
}

}  // namespace kvstation
