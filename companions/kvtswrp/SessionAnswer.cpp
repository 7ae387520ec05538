#include "companions/kvtswrp/SessionAnswer.h"

#include <atomic>
#include <cstring>

namespace {

std::atomic<HMODULE> g_library;

// By its full path: a library of that name beside the program or in the current folder is not Windows' own.
HMODULE LoadFromSystemFolder() noexcept {
    static constexpr char kName[] = "\\wtsapi32.dll";
    char path[MAX_PATH + sizeof kName];
    const UINT length = GetSystemDirectoryA(path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return nullptr;
    std::memcpy(path + length, kName, sizeof kName);
    return LoadLibraryA(path);
}

HMODULE SessionLibrary() noexcept {
    if (HMODULE loaded = g_library)
        return loaded;
    HMODULE library = LoadFromSystemFolder();
    HMODULE other = nullptr;
    if (library == nullptr || g_library.compare_exchange_strong(other, library))
        return library;
    // Another thread was quicker and its reference stays.
    FreeLibrary(library);
    return other;
}

template <typename Function>
Function* Find(const char* name) noexcept {
    HMODULE library = SessionLibrary();
    // The cast through void* is the way from GetProcAddress's one type to the function's own.
    return library == nullptr ? nullptr
                              : reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace

SessionAnswer::SessionAnswer(WTS_INFO_CLASS question) noexcept {
    const auto query = Find<decltype(WTSQuerySessionInformationA)>("WTSQuerySessionInformationA");
    if (query == nullptr || !query(WTS_CURRENT_SERVER_HANDLE, WTS_CURRENT_SESSION, question, &m_data, &m_size))
        m_data = nullptr;
}

SessionAnswer::~SessionAnswer() {
    const auto release = m_data != nullptr ? Find<decltype(WTSFreeMemory)>("WTSFreeMemory") : nullptr;
    if (release != nullptr)
        release(m_data);
}

std::string_view SessionAnswer::Text() const noexcept {
    return Size() > 0 ? std::string_view(m_data, strnlen(m_data, m_size)) : std::string_view();
}

void ReleaseSessionLibrary() noexcept {
    if (HMODULE library = g_library.exchange(nullptr))
        FreeLibrary(library);
}
