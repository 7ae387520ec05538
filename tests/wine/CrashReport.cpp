#include "tests/wine/CrashReport.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "framework/Windows.h"

namespace kvtest {
namespace {

// Plain storage: what the handler reads must not depend on a heap that may be the reason for the crash.
std::array<char, 128> g_station{};

struct Place {
    std::array<char, MAX_PATH> file{};
    ULONG_PTR offset = 0;
};

// The loaded file that an address belongs to, and how far into it.
Place placeOf(const void* address) {
    Place place;
    place.offset = reinterpret_cast<ULONG_PTR>(address);
    HMODULE file = nullptr;
    constexpr DWORD kByAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExA(kByAddress, static_cast<LPCSTR>(address), &file) != FALSE) {
        GetModuleFileNameA(file, place.file.data(), static_cast<DWORD>(place.file.size()));
        place.offset -= reinterpret_cast<ULONG_PTR>(file);
    }
    return place;
}

const char* nameOf(const Place& place) {
    const char* path = place.file.data();
    const char* end = path + strnlen(path, place.file.size());
    return std::find(std::make_reverse_iterator(end), std::make_reverse_iterator(path), '\\').base();
}

LONG CALLBACK report(EXCEPTION_POINTERS* crash) {
    const EXCEPTION_RECORD& exception = *crash->ExceptionRecord;
    const Place place = placeOf(exception.ExceptionAddress);
    std::fprintf(stderr, "%s: exception 0x%08lX at %s+0x%llX", g_station.data(), exception.ExceptionCode, nameOf(place),
                 static_cast<unsigned long long>(place.offset));
    if (exception.ExceptionCode == static_cast<DWORD>(EXCEPTION_ACCESS_VIOLATION) && exception.NumberParameters >= 2)
        std::fprintf(stderr, ", access to 0x%016llX",
                     static_cast<unsigned long long>(exception.ExceptionInformation[1]));
    std::fputc('\n', stderr);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), exception.ExceptionCode);
    return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

void NameStationInCrashes(const std::string& station) {
    g_station.fill('\0');
    station.copy(g_station.data(), g_station.size() - 1);
    SetUnhandledExceptionFilter(report);
}

}  // namespace kvtest
