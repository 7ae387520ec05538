#include "kvstation/calls/CallError.h"

#include <algorithm>

#include "framework/Windows.h"
#include "framework/WindowsSockets.h"

#include <lm.h>

namespace kvstation {
namespace {

constexpr NamedError kWindowsErrors[] = {
    KV_ERROR(ERROR_FILE_NOT_FOUND),
    KV_ERROR(ERROR_PATH_NOT_FOUND),
    KV_ERROR(ERROR_ACCESS_DENIED),
    KV_ERROR(ERROR_INVALID_HANDLE),
    KV_ERROR(ERROR_NOT_ENOUGH_MEMORY),
    KV_ERROR(ERROR_INVALID_DATA),
    KV_ERROR(ERROR_NO_MORE_FILES),
    KV_ERROR(ERROR_NOT_READY),
    KV_ERROR(ERROR_GEN_FAILURE),
    KV_ERROR(ERROR_NOT_SUPPORTED),
    KV_ERROR(ERROR_BAD_NET_NAME),
    KV_ERROR(ERROR_INVALID_PARAMETER),
    KV_ERROR(ERROR_BUFFER_OVERFLOW),
    KV_ERROR(ERROR_CALL_NOT_IMPLEMENTED),
    KV_ERROR(ERROR_INSUFFICIENT_BUFFER),
    KV_ERROR(ERROR_INVALID_NAME),
    KV_ERROR(ERROR_MOD_NOT_FOUND),
    KV_ERROR(ERROR_PROC_NOT_FOUND),
    KV_ERROR(ERROR_BAD_PATHNAME),
    KV_ERROR(ERROR_ENVVAR_NOT_FOUND),
    KV_ERROR(ERROR_MORE_DATA),
    KV_ERROR(ERROR_NO_MORE_ITEMS),
    KV_ERROR(ERROR_DIRECTORY),
    KV_ERROR(ERROR_NO_TOKEN),
    KV_ERROR(ERROR_OLD_WIN_VERSION),
    KV_ERROR(ERROR_NOT_LOGGED_ON),
    KV_ERROR(ERROR_NONE_MAPPED),
    KV_ERROR(ERROR_NO_SUCH_DOMAIN),
    KV_ERROR(ERROR_RESOURCE_TYPE_NOT_FOUND),
    KV_ERROR(ERROR_RESOURCE_DATA_NOT_FOUND),
    KV_ERROR(ERROR_NOT_FOUND),
    KV_ERROR(NERR_WkstaNotStarted),
    KV_ERROR(WSAEFAULT),
    KV_ERROR(WSAEAFNOSUPPORT),
    KV_ERROR(WSAENETDOWN),
    KV_ERROR(WSASYSNOTREADY),
    KV_ERROR(WSANOTINITIALISED),
    KV_ERROR(WSAHOST_NOT_FOUND),
    KV_ERROR(WSATRY_AGAIN),
    KV_ERROR(WSANO_RECOVERY),
    KV_ERROR(WSANO_DATA),
};

}  // namespace

std::string_view windowsErrorName(std::uint32_t code) {
    return nameIn(kWindowsErrors, code);
}

std::string_view nameIn(std::span<const NamedError> errors, std::uint32_t code) {
    const auto found = std::ranges::find(errors, code, &NamedError::code);
    return found != errors.end() ? found->name : std::string_view();
}

std::string shown(const CallError& error) {
    return std::to_string(error.code) + (error.name.empty() ? "" : " " + error.name);
}

}  // namespace kvstation
