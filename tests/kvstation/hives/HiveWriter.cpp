#include "tests/kvstation/hives/HiveWriter.h"

#include <hivex.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "kvstation/platform/Files.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::KeyId;
using simwin::RegistryTree;
using simwin::RegistryValue;

constexpr std::size_t kHeader = 4096;
constexpr std::size_t kBin = 4096;
constexpr std::uint32_t kNone = 0xFFFFFFFF;

constexpr const char* kCurrent = "CurrentControlSet";
constexpr const char* kFirst = "ControlSet001";

struct CloseHive {
    void operator()(hive_h* hive) const { hivex_close(hive); }
};
using OwnedHive = std::unique_ptr<hive_h, CloseHive>;

void put(std::string& bytes, std::size_t place, std::uint64_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes[place + i] = static_cast<char>(static_cast<unsigned char>(number >> 8 * i));
}

void putHeader(std::string& bytes) {
    bytes.replace(0, 4, "regf");
    put(bytes, 4, 1, 4);  // the two sequence numbers
    put(bytes, 8, 1, 4);
    put(bytes, 20, 1, 4);  // version 1.3
    put(bytes, 24, 3, 4);
    put(bytes, 32, 1, 4);     // memory format
    put(bytes, 36, 0x20, 4);  // the root key, counted from the first bin
    put(bytes, 40, kBin, 4);  // size of the bins
    put(bytes, 44, 1, 4);     // clusters
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < 508; i += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, bytes.data() + i, sizeof word);
        sum ^= word;
    }
    put(bytes, 508, sum, 4);
}

// A used cell has its size as a negative number.
void putCellSize(std::string& bytes, std::size_t cell, std::uint32_t size) {
    put(bytes, cell, 0U - std::uint64_t{size}, 4);
}

void putRootKey(std::string& bytes, std::size_t cell, std::uint32_t size) {
    putCellSize(bytes, cell, size);
    const std::size_t key = cell + 4;
    bytes.replace(key, 2, "nk");
    put(bytes, key + 2, 0x2C, 2);          // root, undeletable, narrow name
    put(bytes, key + 16, kNone, 4);        // parent
    put(bytes, key + 28, kNone, 4);        // sub-keys
    put(bytes, key + 32, kNone, 4);        // volatile sub-keys
    put(bytes, key + 40, kNone, 4);        // values
    put(bytes, key + 44, 0x20 + size, 4);  // security
    put(bytes, key + 48, kNone, 4);        // class
    put(bytes, key + 72, 4, 2);
    bytes.replace(key + 76, 4, "ROOT");
}

// The only descriptor of the hive, linked to itself in both directions.
void putSecurity(std::string& bytes, std::size_t cell, std::uint32_t size) {
    putCellSize(bytes, cell, size);
    const std::size_t security = cell + 4;
    bytes.replace(security, 2, "sk");
    put(bytes, security + 4, cell - kHeader, 4);
    put(bytes, security + 8, cell - kHeader, 4);
    put(bytes, security + 12, 1, 4);   // keys that have it
    put(bytes, security + 16, 20, 4);  // its size: revision 1, self-relative, empty
    put(bytes, security + 20, 1, 1);
    put(bytes, security + 22, 0x8000, 2);
}

void check(bool done, const char* call) {
    if (!done)
        throw std::system_error(errno, std::generic_category(), call);
}

void setValues(hive_h* hive, hive_node_h node, const RegistryTree& tree, KeyId key) {
    std::vector<std::string> names;
    std::vector<std::string> bytes;
    for (std::size_t i = 0; const RegistryValue* value = tree.value(key, i); ++i) {
        names.push_back(simwin::toUtf8(value->name));
        bytes.push_back(isText(*value) ? simwin::toUtf16Bytes(value->bytes) : value->bytes);
    }
    std::vector<hive_set_value> values(names.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = {names[i].data(), hive_t_REG_NONE, bytes[i].size(), bytes[i].data()};
        std::memcpy(&values[i].t, &tree.value(key, i)->type, sizeof values[i].t);
    }
    check(hivex_node_set_values(hive, node, values.size(), values.data(), 0) == 0, "hivex_node_set_values");
}

void fill(hive_h* hive, hive_node_h node, const RegistryTree& tree, KeyId key, bool isSystem) {
    setValues(hive, node, tree, key);
    for (std::size_t i = 0; const std::string* name = tree.subKeyName(key, i); ++i) {
        const bool isCurrent = isSystem && simwin::equalNoCase(*name, kCurrent);
        if (isSystem && tree.find(key, kCurrent) && simwin::equalNoCase(*name, kFirst))
            continue;
        const std::string inHive = isCurrent ? kFirst : simwin::toUtf8(*name);
        const hive_node_h child = hivex_node_add_child(hive, node, inHive.c_str());
        check(child != 0, "hivex_node_add_child");
        fill(hive, child, tree, *tree.find(key, *name), false);
    }
}

}  // namespace

std::string emptyHive() {
    constexpr std::uint32_t kKeySize = 88;
    constexpr std::uint32_t kSecuritySize = 48;
    std::string bytes(kHeader + kBin, '\0');
    bytes.replace(kHeader, 4, "hbin");
    put(bytes, kHeader + 8, kBin, 4);
    putRootKey(bytes, kHeader + 0x20, kKeySize);
    putSecurity(bytes, kHeader + 0x20 + kKeySize, kSecuritySize);
    put(bytes, kHeader + 0x20 + kKeySize + kSecuritySize, kBin - 0x20 - kKeySize - kSecuritySize, 4);
    putHeader(bytes);
    return bytes;
}

void writeHive(const std::string& path, const RegistryTree& tree, std::string_view root) {
    writeFile(path, emptyHive());
    const OwnedHive hive(hivex_open(path.c_str(), HIVEX_OPEN_WRITE));
    check(hive != nullptr, "hivex_open");
    if (const auto key = tree.find(root))
        fill(hive.get(), hivex_root(hive.get()), tree, *key, root.ends_with("SYSTEM"));
    check(hivex_commit(hive.get(), nullptr, 0) == 0, "hivex_commit");
}

void writeHives(const std::string& folder, RegistryTree tree) {
    if (!tree.find("HKEY_LOCAL_MACHINE\\SYSTEM\\Select"))
        tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\Select", simwin::dwordValue("Current", 1));
    writeHive(folder + "/SYSTEM", tree, "HKEY_LOCAL_MACHINE\\SYSTEM");
    writeHive(folder + "/SOFTWARE", tree, "HKEY_LOCAL_MACHINE\\SOFTWARE");
    writeHive(folder + "/DEFAULT", tree, "HKEY_USERS\\.DEFAULT");
    writeHive(folder + "/NTUSER.DAT", tree, "HKEY_CURRENT_USER");
    writeHive(folder + "/UsrClass.dat", tree, "HKEY_CURRENT_USER\\Software\\Classes");
}

// cppcheck-suppress passedByValue ; hivex takes the bytes as its own to change
void setWideText(const std::string& path, const std::string& key, const std::string& name, std::string bytes) {
    const OwnedHive hive(hivex_open(path.c_str(), HIVEX_OPEN_WRITE));
    check(hive != nullptr, "hivex_open");
    const hive_node_h node = hivex_node_get_child(hive.get(), hivex_root(hive.get()), key.c_str());
    check(node != 0, "hivex_node_get_child");
    std::string ownName = name;
    const hive_set_value value{ownName.data(), hive_t_REG_SZ, bytes.size(), bytes.data()};
    check(hivex_node_set_value(hive.get(), node, &value, 0) == 0, "hivex_node_set_value");
    check(hivex_commit(hive.get(), nullptr, 0) == 0, "hivex_commit");
}

void replaceInFile(const std::string& path, std::string_view old, std::string_view bytes) {
    std::string content = readFile(path, std::size_t{1} << 24);
    const std::size_t place = content.find(old);
    if (place == std::string::npos || content.find(old, place + 1) != std::string::npos || old.size() != bytes.size())
        throw std::logic_error("no single place in " + path);
    content.replace(place, old.size(), bytes);
    writeFile(path, content);
}

}  // namespace kvstation
