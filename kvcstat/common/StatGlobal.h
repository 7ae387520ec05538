#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// The module's toolbox: registry, platform, environment, file versions, lists. It holds no data and caches nothing;
// every function that needs it creates one. No operation traces or shows anything: a failed call of Windows yields
// the negative or empty answer.
class CStatGlobal : public CObject {
  public:
    // Zero bytes behind data that is walked as text, as a list (which ends with two zeros) or as UTF-16 of odd size
    // (three): registry data need not be terminated.
    static constexpr DWORD kRegDataPadding = 4;

    ~CStatGlobal() override = default;

    // --- Registry: keys. Open answers null when the key cannot be opened; the caller closes it with CloseRegKey.
    HKEY OpenRegKey(unsigned int resourceId) const;
    HKEY OpenRegKey(HKEY hive, const char* subKey) const;
    HKEY OpenRegKey(const char* fullPath) const;
    void CloseRegKey(HKEY key) const;
    // Name of the index-th sub-key or value, at most 254 characters; empty behind the last one and on any failure.
    CString EnumRegKey(HKEY key, DWORD index) const;
    CString EnumRegValue(HKEY key, DWORD index) const;

    // --- Registry: values. 0 for success, -1 for failure; the form with hive and sub-key opens and closes the key.
    // Text of a REG_SZ, REG_BINARY or REG_MULTI_SZ value, the items of the last joined with "//". `out` is untouched
    // when the value is missing or of another type (REG_EXPAND_SZ too), and empty when reading it failed.
    int GetRegString(HKEY hive, const char* subKey, const char* valueName, CString& out, bool ignored = false) const;
    int GetRegString(HKEY key, const char* valueName, CString& out, bool ignored = false) const;
    // Number of a REG_DWORD value. `out` is untouched when it is missing or of another type, 0 when reading failed.
    int GetRegDWORD(HKEY hive, const char* subKey, const char* valueName, DWORD& out) const;
    int GetRegDWORD(HKEY key, const char* valueName, DWORD& out) const;
    // Bytes of a REG_BINARY, REG_MULTI_SZ or REG_SZ value, with zeros behind them, which the caller frees with
    // delete[]. On failure `out` is null, but untouched when the key cannot be opened.
    int GetRegBinary(HKEY hive, const char* subKey, const char* valueName, BYTE*& out) const;
    int GetRegBinary(HKEY key, const char* valueName, BYTE*& out) const;
    // A text by the strict rule: `buffer` (of `size` bytes) receives the text of a terminated REG_SZ or
    // REG_EXPAND_SZ value, or the first item of a doubly terminated REG_MULTI_SZ value; one of no bytes at all is an
    // empty text. ERROR_SUCCESS; ERROR_INVALID_DATA, with an empty buffer, for another type or a missing terminator;
    // else the error of RegQueryValueExA, such as ERROR_MORE_DATA, and what is in the buffer does not count.
    LONG GetRegStringStrict(HKEY key, const char* valueName, char* buffer, DWORD size) const;

    // --- Registry: data as text. Pure functions of the bytes.
    // Items of a multi-string (ended by an empty item) joined with "//".
    CString MultiSzToString(const char* multiString) const;
    // The bytes as text, or as UTF-16 text when they look like it. kRegDataPadding zeros must stand behind them.
    CString RegDataToString(const BYTE* data, DWORD size) const;

    // --- Registry: native paths. `hive` when the path begins with `prefix`, which is then cut off; else null.
    HKEY StripPrefix(CString& path, const char* prefix, HKEY hive) const;
    // Turns "\REGISTRY\Machine\..." into HKEY_LOCAL_MACHINE and the rest: 0, or -1 with the path unchanged.
    int MapNativeRegPath(HKEY& hive, CString& path) const;

    // --- Platform.
    DWORD GetPlatformId() const;  // GetVersionExA's: 0 Win32s, 1 Windows 9x, 2 Windows NT; 0 when it fails, too
    bool IsWindowsNT5() const;    // NT with major version 5 exactly: Windows 2000, XP, Server 2003
    bool IsTerminalServer() const;
    bool IsProductSuite(const char* suite) const;
    bool IsWinFrame() const;
    bool IsMetaFrame() const;
    bool IsTSClientSession() const;
    bool IsRemoteSession() const;  // any of the last three: a client session on a terminal server

    // --- Environment, through the product's library: values of at most 511 characters, empty when unset.
    CString GetEnvVar(const char* name) const;
    int SetEnvVar(const char* name, const char* value) const;  // the library's result

    // --- Files. "6.0.2900.2180", or empty for a file without a version resource.
    CString GetFileVersion(CString file) const;
    CString GetFileVersionString(CString file, const char* entry) const;  // always empty

    // --- Texts and lists. The separator stands only between items.
    void AppendString(CString& list, const char* text, const char* separator) const;
    void AppendNumbered(CString& list, int number, const char* text, const char* separator) const;
    void DeleteObList(CObList& list) const;
    const char* StrStr(const char* text, const char* part) const;
    int MbsCmp(const unsigned char* left, const unsigned char* right) const;

  private:
    bool IsCitrixProduct(const char* word) const;
};
