// Registry: opening, closing and enumerating keys; native paths.
#include <cstring>

#include "kvcstat/common/RegistryEntry.h"
#include "kvcstat/common/StatGlobal.h"

HKEY CStatGlobal::OpenRegKey(unsigned int resourceId) const {
    return CRegistryEntry(resourceId).Open();
}

HKEY CStatGlobal::OpenRegKey(HKEY hive, const char* subKey) const {
    if (hive == nullptr || subKey == nullptr)
        return nullptr;
    return CRegistryEntry(hive, subKey).Open();
}

HKEY CStatGlobal::OpenRegKey(const char* fullPath) const {
    if (fullPath == nullptr)
        return nullptr;
    return CRegistryEntry(fullPath).Open();
}

void CStatGlobal::CloseRegKey(HKEY key) const {
    RegCloseKey(key);
}

CString CStatGlobal::EnumRegKey(HKEY key, DWORD index) const {
    char name[255] = {};
    if (key == nullptr || RegEnumKeyA(key, index, name, sizeof name) != ERROR_SUCCESS)
        return {};
    return name;
}

CString CStatGlobal::EnumRegValue(HKEY key, DWORD index) const {
    char name[255] = {};
    DWORD length = sizeof name;
    DWORD type = REG_NONE;
    if (key == nullptr || RegEnumValueA(key, index, name, &length, nullptr, &type, nullptr, nullptr) != ERROR_SUCCESS)
        return {};
    return name;
}

HKEY CStatGlobal::StripPrefix(CString& path, const char* prefix, HKEY hive) const {
    if (path.Find(prefix) != 0)
        return nullptr;
    path = path.Mid(static_cast<int>(std::strlen(prefix)));
    return hive;
}

int CStatGlobal::MapNativeRegPath(HKEY& hive, CString& path) const {
    hive = StripPrefix(path, "\\REGISTRY\\Machine\\", HKEY_LOCAL_MACHINE);
    return hive != nullptr ? 0 : -1;
}
