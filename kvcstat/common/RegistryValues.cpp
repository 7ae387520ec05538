// Registry: reading values. Each is asked twice, first for type and size, then for the data; by the strict rule once.
#include <algorithm>
#include <memory>

#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"

namespace {

struct ValueInfo {
    LSTATUS error;
    DWORD type;
    DWORD size;
};

ValueInfo AskValue(HKEY key, const char* valueName) {
    ValueInfo info = {ERROR_SUCCESS, REG_NONE, 0};
    info.error = RegQueryValueExA(key, valueName, nullptr, &info.type, nullptr, &info.size);
    return info;
}

// The types whose data reads as text; REG_EXPAND_SZ is not among them on purpose.
bool IsTextType(DWORD type) {
    return type == REG_SZ || type == REG_MULTI_SZ || type == REG_BINARY;
}

// Zero-filled room for the data and the padding behind it. REG_* data has no limit but memory.
std::unique_ptr<BYTE[]> MakeBuffer(DWORD size) {
    return std::unique_ptr<BYTE[]>(new BYTE[std::size_t{size} + CStatGlobal::kRegDataPadding]());
}

}  // namespace

int CStatGlobal::GetRegString(HKEY hive, const char* subKey, const char* valueName, CString& out, bool) const {
    const UniqueRegKey key(OpenRegKey(hive, subKey));
    return key != nullptr ? GetRegString(key.get(), valueName, out) : -1;
}

int CStatGlobal::GetRegString(HKEY key, const char* valueName, CString& out, bool) const {
    if (key == nullptr || valueName == nullptr)
        return -1;
    const ValueInfo info = AskValue(key, valueName);
    if (info.error != ERROR_SUCCESS || !IsTextType(info.type))
        return -1;
    const auto data = MakeBuffer(info.size);
    DWORD size = info.size;
    if (RegQueryValueExA(key, valueName, nullptr, nullptr, data.get(), &size) != ERROR_SUCCESS) {
        out.Empty();
        return -1;
    }
    out = info.type == REG_MULTI_SZ ? MultiSzToString(reinterpret_cast<const char*>(data.get()))
                                    : RegDataToString(data.get(), size);
    return 0;
}

int CStatGlobal::GetRegDWORD(HKEY hive, const char* subKey, const char* valueName, DWORD& out) const {
    const UniqueRegKey key(OpenRegKey(hive, subKey));
    return key != nullptr ? GetRegDWORD(key.get(), valueName, out) : -1;
}

int CStatGlobal::GetRegDWORD(HKEY key, const char* valueName, DWORD& out) const {
    if (key == nullptr || valueName == nullptr)
        return -1;
    const ValueInfo info = AskValue(key, valueName);
    if (info.error != ERROR_SUCCESS || info.type != REG_DWORD)
        return -1;
    DWORD number = 0;
    DWORD size = std::min<DWORD>(info.size, sizeof number);
    const bool read =
        RegQueryValueExA(key, valueName, nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size) == ERROR_SUCCESS;
    out = read ? number : 0;
    return read ? 0 : -1;
}

int CStatGlobal::GetRegBinary(HKEY hive, const char* subKey, const char* valueName, BYTE*& out) const {
    const UniqueRegKey key(OpenRegKey(hive, subKey));
    return key != nullptr ? GetRegBinary(key.get(), valueName, out) : -1;
}

int CStatGlobal::GetRegBinary(HKEY key, const char* valueName, BYTE*& out) const {
    out = nullptr;
    if (key == nullptr || valueName == nullptr)
        return -1;
    const ValueInfo info = AskValue(key, valueName);
    if (info.error != ERROR_SUCCESS || !IsTextType(info.type))
        return -1;
    auto data = MakeBuffer(info.size);
    DWORD size = info.size;
    if (RegQueryValueExA(key, valueName, nullptr, nullptr, data.get(), &size) != ERROR_SUCCESS)
        return -1;
    out = data.release();
    return 0;
}

LONG CStatGlobal::GetRegStringStrict(HKEY key, const char* valueName, char* buffer, DWORD size) const {
    DWORD type = REG_NONE;
    const LSTATUS error = RegQueryValueExA(key, valueName, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size);
    if (error != ERROR_SUCCESS)
        return error;
    if (size == 0 && (type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ)) {
        buffer[0] = '\0';
        return ERROR_SUCCESS;
    }
    const bool text = (type == REG_SZ || type == REG_EXPAND_SZ) && buffer[size - 1] == '\0';
    const bool list = type == REG_MULTI_SZ && size >= 2 && buffer[size - 1] == '\0' && buffer[size - 2] == '\0';
    if (text || list)
        return ERROR_SUCCESS;
    buffer[0] = '\0';
    return ERROR_INVALID_DATA;
}
