#include <cstring>

#include "framework/String.h"
#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"

using namespace simwin;

namespace {

// Copies a text with its terminator where `*size` has room for both; the size needed in any case.
bool copyWhole(const std::string& text, char* buffer, const DWORD* size, DWORD& needed) {
    needed = static_cast<DWORD>(text.size() + 1);
    if (buffer == nullptr || *size < needed)
        return false;
    std::memcpy(buffer, text.c_str(), needed);
    return true;
}

BOOL userName(Machine& machine, char* buffer, DWORD* size) {
    if (!machine.station().user.name)
        return fail(machine, ERROR_NOT_LOGGED_ON);
    if (size == nullptr)
        return fail(machine, ERROR_INVALID_PARAMETER);
    DWORD needed = 0;
    const bool fits = copyWhole(*machine.station().user.name, buffer, size, needed);
    *size = needed;
    return fits ? TRUE : fail(machine, ERROR_INSUFFICIENT_BUFFER);
}

const OptionalText* formOf(const User& user, EXTENDED_NAME_FORMAT format) {
    switch (format) {
        case NameSamCompatible:
            return &user.samCompatible;
        case NameDisplay:
            return &user.displayName;
        case NameUserPrincipal:
            return &user.principal;
        default:
            return nullptr;
    }
}

BOOLEAN userNameEx(Machine& machine, EXTENDED_NAME_FORMAT format, char* buffer, ULONG* size) {
    const OptionalText* name = formOf(machine.station().user, format);
    if (size == nullptr)
        return static_cast<BOOLEAN>(fail(machine, ERROR_INVALID_PARAMETER));
    if (buffer == nullptr && *size != 0)
        machine.reportMisuse("GetUserNameExA", 0, "is no buffer of that size");
    if (name == nullptr || !*name)
        return static_cast<BOOLEAN>(fail(machine, ERROR_NONE_MAPPED));
    DWORD needed = 0;
    const bool fits = copyWhole(**name, buffer, size, needed);
    // On success the size is told without the terminator.
    *size = fits ? needed - 1 : needed;
    return static_cast<BOOLEAN>(fits ? TRUE : fail(machine, ERROR_MORE_DATA));
}

BOOL computerName(Machine& machine, char* buffer, DWORD* size) {
    if (!machine.station().computerName)
        return fail(machine, ERROR_FILE_NOT_FOUND);
    if (size == nullptr)
        return fail(machine, ERROR_INVALID_PARAMETER);
    DWORD needed = 0;
    const bool fits = copyWhole(*machine.station().computerName, buffer, size, needed);
    *size = fits ? needed - 1 : needed;
    return fits ? TRUE : fail(machine, ERROR_BUFFER_OVERFLOW);
}

int fillName(const OptionalText& name, CString& place) {
    if (!name)
        return 0;
    place = name->c_str();
    return 1;
}

// A text of the module's class; a replay fills one of its own.
struct NewString {
    CString& place;

    struct Kept : KeptNothingOfIt {
        CString scratch;
        CString& argument(ReplayState&) { return scratch; }
        // The machine's heap ends with the machine.
        void done(ReplayState&) { scratch.Empty(); }
    };
    CString& raw() const { return place; }
    Fact fact(bool) const { return std::string(static_cast<const char*>(place)); }
    Kept keep(Recording&) const { return {}; }
    void input(std::string&, Machine&) const {}
    void output(std::string& text, Machine&) const { appendQuoted(text, static_cast<const char*>(place)); }
};

}  // namespace

BOOL WINAPI sim_GetUserNameA(LPSTR buffer, LPDWORD size) {
    return makeCall<sim_GetUserNameA>(
        "GetUserNameA", failsWithZero(ERROR_NOT_LOGGED_ON),
        [&](Machine& machine) { return userName(machine, buffer, size); },
        TextBuffer{buffer, size != nullptr ? *size : 0}, Number{size});
}

BOOLEAN WINAPI sim_GetUserNameExA(EXTENDED_NAME_FORMAT format, LPSTR buffer, PULONG size) {
    return makeCall<sim_GetUserNameExA>(
        "GetUserNameExA", failsWithZero(ERROR_NONE_MAPPED),
        [&](Machine& machine) { return userNameEx(machine, format, buffer, size); }, Value{format},
        TextBuffer{buffer, size != nullptr ? *size : 0}, Number{size});
}

BOOL WINAPI sim_GetComputerNameA(LPSTR buffer, LPDWORD size) {
    return makeCall<sim_GetComputerNameA>(
        "GetComputerNameA", failsWithZero(ERROR_FILE_NOT_FOUND),
        [&](Machine& machine) { return computerName(machine, buffer, size); },
        TextBuffer{buffer, size != nullptr ? *size : 0}, Number{size});
}

int sim_KVGetUserName(CString& name) {
    return makeCall<sim_KVGetUserName>(
        "KVGetUserName", failsWithZero(ERROR_NOT_LOGGED_ON),
        [&](Machine& machine) { return fillName(machine.station().user.network, name); }, NewString{name});
}

int sim_KVNDSWhoAmI(const char* context, CString& name) {
    return makeCall<sim_KVNDSWhoAmI>(
        "KVNDSWhoAmI", failsWithZero(ERROR_NOT_LOGGED_ON),
        [&](Machine& machine) { return fillName(machine.station().user.directory, name); }, Text{context},
        NewString{name});
}

void sim_KVGetDomainName(CString& name) {
    makeCall<sim_KVGetDomainName>(
        "KVGetDomainName", failsWithZero(ERROR_NO_SUCH_DOMAIN),
        [&](Machine& machine) {
            // Unlike the other two it empties the name of a station in no domain.
            name.Empty();
            fillName(machine.station().network.domain, name);
        },
        NewString{name});
}
