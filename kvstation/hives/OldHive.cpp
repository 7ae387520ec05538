#include "kvstation/hives/OldHive.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "kvstation/platform/Errors.h"

namespace kvstation {
namespace {

// The library looks through a whole block for each key.
constexpr std::size_t kMostKeys = 65536;

struct FreeValue {
    void operator()(libcreg_value_t* value) const { libcreg_value_free(&value, nullptr); }
};
using CregValue = std::unique_ptr<libcreg_value_t, FreeValue>;

// A text or data of the library: its size, and then the bytes.
template <class Owner, class GetSize, class Get>
std::optional<std::string> take(Owner* owner, GetSize getSize, Get get) {
    std::size_t size = 0;
    if (getSize(owner, &size, nullptr) != 1)
        return std::nullopt;
    std::string bytes(size, '\0');
    if (size != 0 && get(owner, reinterpret_cast<std::uint8_t*>(bytes.data()), size, nullptr) != 1)
        return std::nullopt;
    return bytes;
}

std::optional<simwin::RegistryValue> readValue(libcreg_key_t* key, int index) {
    libcreg_value_t* found = nullptr;
    if (libcreg_key_get_value_by_index(key, index, &found, nullptr) != 1)
        return std::nullopt;
    const CregValue value(found);
    std::uint32_t type = 0;
    std::optional<std::string> name = take(found, libcreg_value_get_name_size, libcreg_value_get_name);
    std::optional<std::string> bytes = take(found, libcreg_value_get_value_data_size, libcreg_value_get_value_data);
    if (!name || !bytes || libcreg_value_get_value_type(found, &type, nullptr) != 1)
        return std::nullopt;
    if (static_cast<simwin::RegistryType>(type) == simwin::RegistryType::Text && !bytes->ends_with('\0'))
        bytes->push_back('\0');
    return simwin::RegistryValue{std::move(*name), type, std::move(*bytes)};
}

}  // namespace

void OldHive::FreeFile::operator()(libcreg_file_t* file) const {
    libcreg_file_free(&file, nullptr);
}
void OldHive::FreeKey::operator()(libcreg_key_t* key) const {
    libcreg_key_free(&key, nullptr);
}

OldHive::OldHive(std::string bytes, const std::string& path)
    : m_bytes(std::move(bytes)), m_mending(m_bytes), m_file(m_bytes, path) {
    libcreg_file_t* file = nullptr;
    if (libcreg_file_initialize(&file, nullptr) != 1)
        throw Failure(path + " cannot be read: there is no memory for it");
    m_library.reset(file);
    libcreg_key_t* root = nullptr;
    if (libcreg_file_open(file, m_file.path().c_str(), LIBCREG_OPEN_READ, nullptr) != 1 ||
        libcreg_file_get_root_key(file, &root, nullptr) != 1)
        throw Failure(path + " is a registry file of Windows 9x that is damaged beyond use");
    m_keys.push_back({std::unique_ptr<libcreg_key_t, FreeKey>(root), OldHiveMending::root()});
}

std::string OldHive::loss() const {
    if (m_mending.blocks() >= m_mending.blocksTold())
        return {};
    return "is cut short: " + std::to_string(m_mending.blocks()) + " of its " + std::to_string(m_mending.blocksTold()) +
           " blocks can be read; what stood in the others is missing";
}

Hive::SubKeys OldHive::readSubKeys(Node key) {
    SubKeys found;
    found.isWhole = !m_mending.hasLostSubKeys(m_keys[key].place);
    int index = 0;
    for (const OldHiveMending::Key place : m_mending.subKeys(m_keys[key].place)) {
        libcreg_key_t* opened = nullptr;
        if (m_keys.size() > kMostKeys ||
            libcreg_key_get_sub_key_by_index(m_keys[key].handle.get(), index++, &opened, nullptr) != 1) {
            found.isWhole = false;
            continue;
        }
        Key subKey{std::unique_ptr<libcreg_key_t, FreeKey>(opened), place};
        std::optional<std::string> name = take(opened, libcreg_key_get_name_size, libcreg_key_get_name);
        found.isWhole = found.isWhole && name.has_value();
        if (!name || !fitsPath(*name))
            continue;
        found.all.push_back({std::move(*name), m_keys.size()});
        m_keys.push_back(std::move(subKey));
    }
    return found;
}

const Hive::SubKeys& OldHive::subKeys(Node key) {
    const auto [place, isNew] = m_subKeys.try_emplace(key);
    if (isNew)
        place->second = readSubKeys(key);
    return place->second;
}

Hive::Values OldHive::values(Node key) {
    libcreg_key_t* handle = m_keys[key].handle.get();
    Values found;
    int count = 0;
    if (key == root())
        return found;
    found.isWhole =
        libcreg_key_get_number_of_values(handle, &count, nullptr) == 1 && !m_mending.hasLostValues(m_keys[key].place);
    for (int i = 0; i < count; ++i) {
        std::optional<simwin::RegistryValue> value = readValue(handle, i);
        found.isWhole = found.isWhole && value.has_value();
        if (value)
            found.all.push_back(std::move(*value));
    }
    return found;
}

}  // namespace kvstation
