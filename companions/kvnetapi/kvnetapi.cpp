#include "companions/kvnetapi/kvnetapi.h"

#include <new>

#include "framework/String.h"
#include "framework/Windows.h"

// Windows.h first: these headers need its types.
#include <lmcons.h>

#include <lmapibuf.h>
#include <lmerr.h>
#include <lmjoin.h>
#include <winnetwk.h>

namespace {

// Far more than any name of a user or a domain has.
constexpr DWORD kNameSize = 1024;

// A failed allocation throws, and no exception may leave the library: its caller may be built by another compiler.
bool Assign(CString& name, const char* text) noexcept {
    try {
        name = text;
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace

extern "C" int KVGetUserName(CString& name) {
    char user[kNameSize] = {};
    DWORD size = kNameSize - 1;
    if (WNetGetUserA(nullptr, user, &size) != NO_ERROR || user[0] == '\0')
        return 0;
    return Assign(name, user);
}

extern "C" int KVNDSWhoAmI(const char*, CString&) {
    return 0;
}

extern "C" void KVGetDomainName(CString& name) {
    name.Empty();
    LPWSTR joined = nullptr;
    NETSETUP_JOIN_STATUS status = NetSetupUnknownStatus;
    if (NetGetJoinInformation(nullptr, &joined, &status) != NERR_Success || joined == nullptr)
        return;
    char domain[kNameSize] = {};
    // A name that does not fit is left half-written.
    const bool whole = status == NetSetupDomainName &&
                       WideCharToMultiByte(CP_ACP, 0, joined, -1, domain, kNameSize - 1, nullptr, nullptr) > 0;
    NetApiBufferFree(joined);
    if (whole)
        Assign(name, domain);
}
