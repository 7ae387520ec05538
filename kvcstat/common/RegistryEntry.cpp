#include "kvcstat/common/RegistryEntry.h"

#include <cstring>

namespace {

struct HiveName {
    const char* name;
    HKEY hive;
};

// The first name that the path begins with wins. Only the name's own length is compared, so that a longer word such as
// HKEY_USERSX names HKEY_USERS too; callers have come to rely on it.
const HiveName kHives[] = {
    {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
    {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},
    {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {"HKEY_USERS", HKEY_USERS},
    {"HKEY_PERFORMANCE_DATA", HKEY_PERFORMANCE_DATA},
    {"HKEY_DYN_DATA", HKEY_DYN_DATA},
};

CString LoadPath(unsigned int resourceId) {
    CString path;
    path.LoadString(resourceId);
    return path;
}

}  // namespace

CRegistryEntry::CRegistryEntry(unsigned int resourceId)
    : CRegistryEntry(static_cast<const char*>(LoadPath(resourceId))) {}

CRegistryEntry::CRegistryEntry(const char* fullPath) : m_cPath(fullPath) {
    ParsePath();
}

CRegistryEntry::CRegistryEntry(HKEY hive, const char* subKey) : m_hRootKey(hive) {
    if (m_hRootKey != nullptr)
        m_cSubKey = subKey;
}

void CRegistryEntry::ParsePath() {
    m_hRootKey = nullptr;
    for (const HiveName& hive : kHives) {
        if (std::strncmp(m_cPath, hive.name, std::strlen(hive.name)) == 0) {
            m_hRootKey = hive.hive;
            const int backslash = m_cPath.Find('\\');
            m_cSubKey = backslash >= 0 ? m_cPath.Mid(backslash + 1) : CString();
            return;
        }
    }
}

HKEY CRegistryEntry::Open() const {
    if (m_hRootKey == nullptr)
        return nullptr;
    HKEY key = nullptr;
    return RegOpenKeyA(m_hRootKey, m_cSubKey, &key) == ERROR_SUCCESS ? key : nullptr;
}
