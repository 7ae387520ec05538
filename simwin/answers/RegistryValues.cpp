#include <algorithm>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/Registry.h"

using namespace simwin;

namespace {

// A text without its terminator, where Windows writes one behind it: only the narrow calls of the NT family do, and
// only where the buffer has room.
bool getsTerminator(const Machine& machine, const RegistryValue& value, std::size_t room) {
    const bool isNT = !machine.station().version || machine.station().version->platformId != VER_PLATFORM_WIN32_WINDOWS;
    return isText(value) && isNT && !value.bytes.empty() && value.bytes.back() != '\0' && value.bytes.size() < room;
}

LSTATUS copyData(const Machine& machine, const RegistryValue& value, BYTE* data, DWORD* size) {
    if (size == nullptr)
        return ERROR_SUCCESS;
    const DWORD room = *size;
    *size = static_cast<DWORD>(value.bytes.size());
    if (data == nullptr)
        return ERROR_SUCCESS;
    if (room < value.bytes.size())
        return ERROR_MORE_DATA;
    std::copy(value.bytes.begin(), value.bytes.end(), data);
    if (getsTerminator(machine, value, room))
        data[value.bytes.size()] = 0;
    return ERROR_SUCCESS;
}

LSTATUS queryValue(Machine& machine, HKEY handle, const char* name, DWORD* type, BYTE* data, DWORD* size) {
    if (data != nullptr && size == nullptr)
        return ERROR_INVALID_PARAMETER;
    const std::optional<KeyId> key = useKey(machine, "RegQueryValueExA", handle);
    if (!key)
        return ERROR_INVALID_HANDLE;
    const RegistryValue* value = machine.station().registry.findValue(*key, name != nullptr ? name : "");
    if (value == nullptr)
        return ERROR_FILE_NOT_FOUND;
    if (type != nullptr)
        *type = value->type;
    return copyData(machine, *value, data, size);
}

struct ValuePlaces {
    char* name;
    DWORD* nameSize;
    DWORD* type;
    BYTE* data;
    DWORD* dataSize;
};

LSTATUS enumValue(Machine& machine, HKEY handle, DWORD index, const ValuePlaces& places) {
    if (places.name == nullptr || places.nameSize == nullptr || (places.data != nullptr && places.dataSize == nullptr))
        return ERROR_INVALID_PARAMETER;
    const std::optional<KeyId> key = useKey(machine, "RegEnumValueA", handle);
    if (!key)
        return ERROR_INVALID_HANDLE;
    const RegistryValue* value = machine.station().registry.value(*key, index);
    if (value == nullptr)
        return ERROR_NO_MORE_ITEMS;
    if (places.type != nullptr)
        *places.type = value->type;
    // Where either has no room, neither is written, and the room of the name stays as it was told.
    if (value->name.size() >= *places.nameSize) {
        if (places.dataSize != nullptr)
            *places.dataSize = static_cast<DWORD>(value->bytes.size());
        return ERROR_MORE_DATA;
    }
    const LSTATUS error = copyData(machine, *value, places.data, places.dataSize);
    if (error != ERROR_SUCCESS)
        return error;
    std::memcpy(places.name, value->name.c_str(), value->name.size() + 1);
    *places.nameSize = static_cast<DWORD>(value->name.size());
    return ERROR_SUCCESS;
}

}  // namespace

LSTATUS WINAPI sim_RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
    const bool isRead = data != nullptr && size != nullptr;
    const DWORD room = isRead ? *size : 0;
    // A read fails because the value grew behind the caller's back, a question for the size because of its rights.
    const auto grow = [&] {
        if (isRead)
            ++*size;
    };
    return makeCall<sim_RegQueryValueExA>(
        "RegQueryValueExA", FailureWith{failsWithCode(isRead ? ERROR_MORE_DATA : ERROR_ACCESS_DENIED), grow},
        [&](Machine& machine) -> LSTATUS {
            return reserved == nullptr ? queryValue(machine, key, name, type, data, size) : ERROR_INVALID_PARAMETER;
        },
        Handle{key}, Text{name}, Handle{reserved}, Number{type}, ByteBuffer<LPBYTE>{data, room, size}, Number{size});
}

LSTATUS WINAPI sim_RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPDWORD type,
                                 LPBYTE data, LPDWORD dataSize) {
    const auto spoil = [&] { spoilName(name, nameSize != nullptr ? *nameSize : 0); };
    return makeCall<sim_RegEnumValueA>(
        "RegEnumValueA", FailureWith{failsWithCode(ERROR_ACCESS_DENIED), spoil},
        [&](Machine& machine) -> LSTATUS {
            return reserved == nullptr ? enumValue(machine, key, index, {name, nameSize, type, data, dataSize})
                                       : ERROR_INVALID_PARAMETER;
        },
        Handle{key}, Value{index}, TextBuffer{name, nameSize != nullptr ? *nameSize : 0}, Number{nameSize},
        Handle{reserved}, Number{type},
        ByteBuffer<LPBYTE>{data, data != nullptr && dataSize != nullptr ? *dataSize : 0, dataSize}, Number{dataSize});
}
