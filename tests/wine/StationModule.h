// The real kvcstat64.dll, loaded from a folder, and a record that a call can be caught writing behind.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <system_error>

#include "framework/Windows.h"
#include "include/kvcstat.h"
#include "kvcstat/common/Handles.h"
#include "tests/stations/RecordPlace.h"

namespace kvtest {

// The folder that the tests run in, that of the release files, with a backslash at its end.
inline std::string ReleaseFolder() {
    char path[MAX_PATH] = {};
    GetCurrentDirectoryA(sizeof path, path);
    return std::string(path) + '\\';
}

class StationModule {
  public:
    explicit StationModule(const std::string& folder)
        : m_library(LoadLibraryExA((folder + "kvcstat64.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
        if (m_library != nullptr)
            m_collect = FindFunction<decltype(&GetStationData)>(m_library.get(), "GetStationData");
    }

    bool IsLoaded() const { return m_collect != nullptr; }
    HMODULE Library() const { return m_library.get(); }
    void Collect(char* record) const { m_collect(record); }

  private:
    UniqueLibrary m_library;
    decltype(&GetStationData) m_collect = nullptr;
};

// A record whose end is the end of accessible memory: a byte written behind it is a crash.
class GuardedRecord {
  public:
    GuardedRecord() : m_pages(static_cast<char*>(VirtualAlloc(nullptr, 3 * kPage, MEM_COMMIT, PAGE_READWRITE))) {
        DWORD before = 0;
        if (m_pages == nullptr || VirtualProtect(m_pages + 2 * kPage, kPage, PAGE_NOACCESS, &before) == FALSE)
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "no guarded record");
    }
    GuardedRecord(const GuardedRecord&) = delete;
    GuardedRecord& operator=(const GuardedRecord&) = delete;
    ~GuardedRecord() { VirtualFree(m_pages, 0, MEM_RELEASE); }

    char* data() { return m_pages + 2 * kPage - KVCSTAT_RECORD_SIZE; }
    void Fill(char byte) { std::memset(data(), byte, KVCSTAT_RECORD_SIZE); }

    // All bytes of a member.
    std::string At(RecordPlace place) { return {data() + place.offset, place.width}; }
    std::string Text(RecordPlace place) {
        const std::string field = At(place);
        return field.substr(0, field.find('\0'));
    }
    std::uint32_t Number(RecordPlace place) {
        std::uint32_t number = 0;
        std::memcpy(&number, data() + place.offset, sizeof number);
        return number;
    }

  private:
    static constexpr std::size_t kPage = 4096;
    char* m_pages;
};

}  // namespace kvtest
