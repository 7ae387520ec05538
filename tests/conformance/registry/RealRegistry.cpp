#include "tests/conformance/registry/RealRegistry.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <stdexcept>

#include <winternl.h>

#include "simwin/machine/Registry.h"
#include "simwin/text/CodePage.h"
#include "tests/conformance/NativeKeys.h"

extern "C" NTSYSAPI NTSTATUS NTAPI NtQueryKey(HANDLE key, int kind, void* buffer, ULONG size, PULONG needed);

namespace conformance {
namespace {

using simwin::Hive;
using simwin::KeyId;
using simwin::RegistryTree;

// Below the parent the classes are a key of the local machine, which is made before them.
const std::string kClasses = simwin::withClassesInPlace("HKEY_CLASSES_ROOT");

std::string placeOf(const simwin::NamedHive& hive) {
    return hive.hive == Hive::ClassesRoot ? kClasses : std::string(hive.name);
}

constexpr char kParent[] = "Software\\kvtest-registry-";
constexpr std::size_t kLongestName = 255;

// The station whose registry is entered, and where the path of its hives' parent ends.
struct Entered {
    const simwin::Station* station = nullptr;
    std::size_t rootLength = 0;
};
Entered g_entered;

// The key's path as the kernel has it, in bytes of the code page.
std::string kernelPath(HKEY key) {
    constexpr int kNameInformation = 3;
    static WCHAR buffer[32768];
    ULONG needed = 0;
    if (NtQueryKey(key, kNameInformation, buffer, sizeof buffer, &needed) < 0)
        return {};
    ULONG bytes = 0;
    std::copy_n(reinterpret_cast<const char*>(buffer), sizeof bytes, reinterpret_cast<char*>(&bytes));
    return simwin::fromUtf16({reinterpret_cast<const char*>(buffer) + sizeof bytes, bytes});
}

// The station's own key behind a real one. A path of the kernel's may hold NULs, but no doubled backslash.
std::optional<KeyId> describedKey(HKEY key) {
    const std::string path = kernelPath(key);
    if (path.size() <= g_entered.rootLength)
        return std::nullopt;
    return g_entered.station->registry.find(path.substr(g_entered.rootLength + 1));
}

std::optional<LSTATUS> ownFailure(const char* call) {
    const auto found = g_entered.station->fails.find(call);
    return found != g_entered.station->fails.end() ? std::optional(static_cast<LSTATUS>(found->second)) : std::nullopt;
}

bool isDenied(HKEY key) {
    const std::optional<KeyId> described = describedKey(key);
    const std::vector<std::string>& denied = g_entered.station->deniedKeys;
    return described && std::any_of(denied.begin(), denied.end(), [&](const std::string& path) {
               return g_entered.station->registry.find(path) == described;
           });
}

LSTATUS unlessDenied(LSTATUS error, const char* subKey, HKEY* result) {
    if (error != ERROR_SUCCESS || subKey == nullptr || *subKey == '\0' || !isDenied(*result))
        return error;
    RegCloseKey(*result);
    *result = nullptr;
    return ERROR_ACCESS_DENIED;
}

// Wine's narrow calls take no longer path; its wide ones do.
constexpr std::size_t kLongestNarrowPath = 260;

LSTATUS openLong(HKEY key, const std::string& subKey, REGSAM access, HKEY* result) {
    const std::string path = simwin::toUtf16Bytes(subKey + '\0');
    return RegOpenKeyExW(key, reinterpret_cast<const WCHAR*>(path.data()), 0, access, result);
}

LSTATUS WINAPI openKey(HKEY key, LPCSTR subKey, PHKEY result) {
    if (const std::optional<LSTATUS> failure = ownFailure("RegOpenKeyA"))
        return *failure;
    const bool isLong = subKey != nullptr && std::strlen(subKey) > kLongestNarrowPath;
    const LSTATUS error = isLong ? openLong(key, subKey, MAXIMUM_ALLOWED, result) : RegOpenKeyA(key, subKey, result);
    return unlessDenied(error, subKey, result);
}

LSTATUS WINAPI openKeyEx(HKEY key, LPCSTR subKey, DWORD options, REGSAM access, PHKEY result) {
    if (const std::optional<LSTATUS> failure = ownFailure("RegOpenKeyExA"))
        return *failure;
    return unlessDenied(RegOpenKeyExA(key, subKey, options, access, result), subKey, result);
}

LSTATUS WINAPI queryValue(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (const std::optional<LSTATUS> failure = ownFailure("RegQueryValueExA"))
        return *failure;
    return RegQueryValueExA(key, name, reserved, type, data, size);
}

// Where a real key has the sub-key or value of a name; behind the last one when it has none.
template <class NameAt>
DWORD placeOf(const std::string& name, NameAt nameAt) {
    std::string found;
    DWORD place = 0;
    while (nameAt(place, found) && !simwin::equalNoCase(found, name))
        ++place;
    return place;
}

DWORD keyPlace(HKEY key, const std::string& name) {
    return placeOf(name, [key](DWORD index, std::string& found) {
        char buffer[2 * kLongestName];
        DWORD size = sizeof buffer;
        const bool isThere =
            RegEnumKeyExA(key, index, buffer, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
        found.assign(buffer, isThere ? size : 0);
        return isThere;
    });
}

DWORD valuePlace(HKEY key, const std::string& name) {
    return placeOf(name, [key](DWORD index, std::string& found) {
        static char buffer[32768];
        DWORD size = sizeof buffer;
        const bool isThere =
            RegEnumValueA(key, index, buffer, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
        found.assign(buffer, isThere ? size : 0);
        return isThere;
    });
}

LSTATUS WINAPI enumKey(HKEY key, DWORD index, LPSTR name, DWORD size) {
    if (const std::optional<LSTATUS> failure = ownFailure("RegEnumKeyA"))
        return *failure;
    const std::optional<KeyId> described = describedKey(key);
    const std::string* wanted = described ? g_entered.station->registry.subKeyName(*described, index) : nullptr;
    return RegEnumKeyA(key, wanted != nullptr ? keyPlace(key, *wanted) : index, name, size);
}

LSTATUS WINAPI enumValue(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPDWORD type,
                         LPBYTE data, LPDWORD dataSize) {
    if (const std::optional<LSTATUS> failure = ownFailure("RegEnumValueA"))
        return *failure;
    const std::optional<KeyId> described = describedKey(key);
    const simwin::RegistryValue* wanted = described ? g_entered.station->registry.value(*described, index) : nullptr;
    const DWORD place = wanted != nullptr ? valuePlace(key, wanted->name) : index;
    return RegEnumValueA(key, place, name, nameSize, reserved, type, data, dataSize);
}

bool isText(std::uint32_t type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

void writeValues(HKEY key, const RegistryTree& tree, KeyId id) {
    const simwin::RegistryValue* value = nullptr;
    for (std::size_t index = 0; (value = tree.value(id, index)) != nullptr; ++index)
        setValue(
            key,
            {value->name, value->type, isText(value->type) ? simwin::toUtf16Bytes(value->bytes) : value->bytes, {}});
}

void writeKeys(HKEY key, const RegistryTree& tree, KeyId id, std::vector<std::string>& refused) {
    writeValues(key, tree, id);
    const std::string* name = nullptr;
    for (std::size_t index = 0; (name = tree.subKeyName(id, index)) != nullptr; ++index) {
        if (name->size() > kLongestName) {
            refused.push_back(tree.path(id) + ": a key's name of " + std::to_string(name->size()) + " characters");
            continue;
        }
        const HKEY child = createKey(key, *name);
        writeKeys(child, tree, *tree.find(id, *name), refused);
        RegCloseKey(child);
    }
}

void turnAll(bool back, HKEY root) {
    for (const simwin::NamedHive& hive : simwin::kHives) {
        HKEY key = nullptr;
        if (!back && RegCreateKeyExA(root, placeOf(hive).c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                                     nullptr, &key, nullptr) != ERROR_SUCCESS)
            throw std::runtime_error(placeOf(hive) + " cannot be made");
        RegOverridePredefKey(simwin::handleOf(hive.hive), key);
        if (key != nullptr)
            RegCloseKey(key);
    }
}

void replaceAll(std::string& text, std::string_view what, std::string_view with) {
    for (std::size_t place = text.find(what); place != std::string::npos; place = text.find(what, place + with.size()))
        text.replace(place, what.size(), with);
}

}  // namespace

RealRegistry::RealRegistry(const simwin::Station& station)
    : m_path(std::string("HKEY_CURRENT_USER\\") + kParent + std::to_string(GetCurrentProcessId())) {
    const std::string below = m_path.substr(m_path.find('\\') + 1);
    if (RegCreateKeyExA(HKEY_CURRENT_USER, below.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                        &m_root, nullptr) != ERROR_SUCCESS)
        throw std::runtime_error(m_path + " cannot be made");
    g_entered = {&station, kernelPath(m_root).size()};
}

RealRegistry::~RealRegistry() {
    turnAll(true, nullptr);
    deleteTree(m_root);
    RegCloseKey(m_root);
    g_entered = {};
}

std::vector<std::string> RealRegistry::write() {
    std::vector<std::string> refused;
    const RegistryTree& tree = g_entered.station->registry;
    for (const Hive hive : simwin::kOwnHives) {
        const HKEY key = createKey(m_root, std::string(simwin::named(hive).name));
        writeKeys(key, tree, tree.root(hive), refused);
        RegCloseKey(key);
    }
    return refused;
}

void RealRegistry::enter() {
    turnAll(false, m_root);
}

const std::vector<redirect::Replacement>& RealRegistry::functions() {
    static const auto entry = [](const char* name, auto* function) {
        return redirect::Replacement{"ADVAPI32.dll", name, 0, reinterpret_cast<const void*>(function)};
    };
    static const std::vector<redirect::Replacement> all = {
        entry("RegOpenKeyA", openKey), entry("RegOpenKeyExA", openKeyEx), entry("RegQueryValueExA", queryValue),
        entry("RegEnumKeyA", enumKey), entry("RegEnumValueA", enumValue), entry("RegCloseKey", RegCloseKey)};
    return all;
}

std::string movedExport(const std::string& content, const std::string& path) {
    std::string text = content.starts_with("\xEF\xBB\xBF") ? content.substr(3) : content;
    replaceAll(text, "\n[HKEY_CLASSES_ROOT", "\n[" + kClasses);
    replaceAll(text, "\n[HKEY_", "\n[" + path + "\\HKEY_");
    if (text.starts_with("Windows"))
        return "\xFF\xFE" + simwin::bytesOfUtf16(simwin::utf16FromUtf8(text));
    return simwin::isUtf8(text) ? simwin::fromUtf8Leniently(text) : text;
}

}  // namespace conformance
