#include "simwin/station/RegistryTree.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "simwin/text/CodePage.h"

namespace simwin {
namespace {

constexpr std::string_view kClasses = "SOFTWARE\\Classes";

// Root keys stand at the numbers of their hives. ClassesRoot's own is never given sub-keys: it stands for the classes
// of a station that describes none.
constexpr KeyId rootOf(Hive hive) {
    return static_cast<KeyId>(hive);
}

// Cuts the first piece off a path; the path then begins behind the backslash that ended the piece.
std::string_view takePiece(std::string_view& path, bool& more) {
    const std::size_t end = findCharacter(path, '\\');
    const std::string_view piece = path.substr(0, end);
    more = end != std::string_view::npos;
    path = more ? path.substr(end + 1) : std::string_view();
    return piece;
}

}  // namespace

bool isText(const RegistryValue& value) {
    const auto type = static_cast<RegistryType>(value.type);
    return type == RegistryType::Text || type == RegistryType::ExpandText || type == RegistryType::MultiText;
}

bool isNumber(const RegistryValue& value) {
    const auto type = static_cast<RegistryType>(value.type);
    return type == RegistryType::DWord || type == RegistryType::QWord;
}

RegistryValue textValue(std::string_view name, std::string_view text) {
    return {std::string(name), static_cast<std::uint32_t>(RegistryType::Text), std::string(text) + '\0'};
}

RegistryValue multiTextValue(std::string_view name, const std::vector<std::string>& items) {
    std::string bytes;
    for (const std::string& item : items)
        bytes += item + '\0';
    return {std::string(name), static_cast<std::uint32_t>(RegistryType::MultiText), bytes + '\0'};
}

RegistryValue dwordValue(std::string_view name, std::uint32_t number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(number >> shift)));
    return {std::string(name), static_cast<std::uint32_t>(RegistryType::DWord), bytes};
}

RegistryValue binaryValue(std::string_view name, std::string_view bytes) {
    return {std::string(name), static_cast<std::uint32_t>(RegistryType::Binary), std::string(bytes)};
}

ListedValues::ListedValues(std::vector<RegistryValue> values) : inOrder(std::move(values)) {
    std::vector<std::uint32_t> sorted(inOrder.size());
    std::iota(sorted.begin(), sorted.end(), 0u);
    std::ranges::sort(sorted, [this](std::uint32_t left, std::uint32_t right) {
        return compareNoCase(inOrder[left].name, inOrder[right].name) < 0;
    });
    byName = SortedBlocks(sorted);
}

void ListedValues::set(RegistryValue value) {
    if (const std::optional<std::uint32_t> known = indexOf(value.name)) {
        RegistryValue& old = inOrder[*known];
        old.type = value.type;
        old.bytes = std::move(value.bytes);
        return;
    }
    byName.insert(static_cast<std::uint32_t>(inOrder.size()), namedBefore(value.name));
    inOrder.push_back(std::move(value));
}

const RegistryValue* ListedValues::find(std::string_view name) const {
    const std::optional<std::uint32_t> index = indexOf(name);
    return index ? &inOrder[*index] : nullptr;
}

std::optional<std::uint32_t> ListedValues::indexOf(std::string_view name) const {
    const std::optional<std::uint32_t> index = byName.find(namedBefore(name));
    return index && equalNoCase(inOrder[*index].name, name) ? index : std::nullopt;
}

std::optional<HivePath> splitHive(std::string_view fullPath) {
    bool more = false;
    std::string_view rest = fullPath;
    const std::string_view name = takePiece(rest, more);
    for (const NamedHive& hive : kHives)
        if (equalNoCase(hive.name, name))
            return HivePath{hive.hive, rest};
    return std::nullopt;
}

std::string_view lastPiece(std::string_view path) {
    return path.substr(findLastCharacter(path, '\\') + 1);
}

std::string_view withoutLastPiece(std::string_view path) {
    const std::size_t end = findLastCharacter(path, '\\');
    return path.substr(0, end != std::string_view::npos ? end : 0);
}

bool holdsEmptyPiece(std::string_view path) {
    for (bool more = true; more;)
        if (takePiece(path, more).empty())
            return true;
    return false;
}

std::string withClassesInPlace(std::string_view fullPath) {
    const std::optional<std::string_view> rest = restBelow(fullPath, named(Hive::ClassesRoot).name);
    if (!rest)
        return std::string(fullPath);
    return std::string(named(Hive::LocalMachine).name) + "\\" + std::string(kClasses) + (rest->empty() ? "" : "\\") +
           std::string(*rest);
}

std::optional<std::string_view> restBelow(std::string_view path, std::string_view root) {
    if (!equalNoCase(path.substr(0, root.size()), root))
        return std::nullopt;
    if (path.size() == root.size())
        return std::string_view();
    if (path[root.size()] != '\\')
        return std::nullopt;
    return path.substr(root.size() + 1);
}

RegistryTree::RegistryTree() {
    for (const NamedHive& hive : kHives) {
        m_keys.emplace_back();
        m_keys.back().name = hive.name;
        m_keys.back().parent = rootOf(hive.hive);
    }
}

std::optional<KeyId> RegistryTree::create(std::string_view fullPath) {
    const std::optional<HivePath> split = splitHive(fullPath);
    if (!split || endsWithCharacter(fullPath, '\\'))
        return std::nullopt;
    KeyId from = rootOf(split->hive);
    if (split->hive == Hive::ClassesRoot)
        from = *createPath(rootOf(Hive::LocalMachine), kClasses);
    return createPath(from, split->rest);
}

std::optional<KeyId> RegistryTree::createPath(KeyId from, std::string_view path) {
    if (path.empty())
        return from;
    if (holdsEmptyPiece(path))
        return std::nullopt;
    for (bool more = true; more;)
        from = createSubKey(from, takePiece(path, more));
    return from;
}

KeyId RegistryTree::createSubKey(KeyId key, std::string_view name) {
    if (const std::optional<KeyId> found = findSubKey(key, name))
        return *found;
    const auto made = static_cast<KeyId>(m_keys.size());
    m_keys.emplace_back();
    m_keys.back().name = name;
    m_keys.back().parent = key;
    Key& parent = at(key);
    parent.subKeysByName.insert(made, namedBefore(name));
    parent.subKeys.push_back(made);
    return made;
}

void RegistryTree::set(KeyId id, RegistryValue value) {
    at(id).values.set(std::move(value));
}

bool RegistryTree::set(std::string_view fullPath, RegistryValue value) {
    const std::optional<KeyId> key = create(fullPath);
    if (key)
        set(*key, std::move(value));
    return key.has_value();
}

KeyId RegistryTree::root(Hive hive) const {
    if (hive != Hive::ClassesRoot)
        return rootOf(hive);
    return find(rootOf(Hive::LocalMachine), kClasses).value_or(rootOf(Hive::ClassesRoot));
}

std::optional<KeyId> RegistryTree::find(KeyId from, std::string_view path) const {
    std::optional<KeyId> key = from;
    for (bool more = !path.empty(); more && key;) {
        const std::string_view piece = takePiece(path, more);
        if (!piece.empty())
            key = findSubKey(*key, piece);
    }
    return key;
}

std::optional<KeyId> RegistryTree::find(std::string_view fullPath) const {
    const std::optional<HivePath> split = splitHive(fullPath);
    if (!split || endsWithCharacter(fullPath, '\\'))
        return std::nullopt;
    return find(root(split->hive), split->rest);
}

const std::string* RegistryTree::subKeyName(KeyId key, std::size_t index) const {
    return index < at(key).subKeys.size() ? &at(at(key).subKeys[index]).name : nullptr;
}

const RegistryValue* RegistryTree::value(KeyId key, std::size_t index) const {
    return index < values(key).size() ? &values(key)[index] : nullptr;
}

const RegistryValue* RegistryTree::findValue(KeyId id, std::string_view name) const {
    return at(id).values.find(name);
}

void RegistryTree::exchangeValues(KeyId id, ListedValues& values) {
    std::swap(at(id).values, values);
}

void RegistryTree::exchangeSubKeys(KeyId id, std::vector<KeyId>& subKeys) {
    at(id).subKeys.swap(subKeys);
    sortSubKeys(at(id));
}

void RegistryTree::exchangeName(KeyId id, std::string& name) {
    at(id).name.swap(name);
    sortSubKeys(at(at(id).parent));
}

void RegistryTree::sortSubKeys(Key& key) {
    std::vector<KeyId> sorted = key.subKeys;
    std::ranges::sort(sorted,
                      [this](KeyId left, KeyId right) { return compareNoCase(at(left).name, at(right).name) < 0; });
    key.subKeysByName = SortedBlocks(sorted);
}

std::string RegistryTree::path(KeyId key) const {
    std::size_t length = at(key).name.size();
    for (KeyId below = key; at(below).parent != below; below = at(below).parent)
        length += 1 + at(at(below).parent).name.size();
    std::string whole(length, '\\');
    for (KeyId one = key;; one = at(one).parent) {
        length -= at(one).name.size();
        at(one).name.copy(whole.data() + length, at(one).name.size());
        if (at(one).parent == one)
            return whole;
        --length;
    }
}

std::optional<KeyId> RegistryTree::findSubKey(KeyId id, std::string_view name) const {
    const std::optional<KeyId> found = at(id).subKeysByName.find(namedBefore(name));
    return found && equalNoCase(at(*found).name, name) ? found : std::nullopt;
}

}  // namespace simwin
