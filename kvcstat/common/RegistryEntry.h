#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// One registry key named by text: a hive and a sub-key below it.
class CRegistryEntry : public CObject {
  public:
    CRegistryEntry() = default;
    // The full path is an entry of the module's string table.
    explicit CRegistryEntry(unsigned int resourceId);
    // Full path: a hive's name, a backslash, the sub-key, such as "HKEY_LOCAL_MACHINE\SOFTWARE".
    explicit CRegistryEntry(const char* fullPath);
    // A hive (or open key) and a sub-key below it; nothing is parsed.
    CRegistryEntry(HKEY hive, const char* subKey);
    ~CRegistryEntry() override = default;

    // Splits m_cPath into hive and sub-key. A path that names no hive leaves the sub-key as it was.
    void ParsePath();

    // The key, opened by RegOpenKeyA, or null. The caller closes it.
    HKEY Open() const;

    HKEY GetHive() const { return m_hRootKey; }
    CString GetSubKey() const { return m_cSubKey; }

  private:
    HKEY m_hRootKey = nullptr;
    CPtrList m_lOpenKeys;
    CString m_cPath;
    CString m_cSubKey;
};
