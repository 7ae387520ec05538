// The memory that the collecting child shares with its parent. It survives the child, however that ends. Windows only.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "framework/Windows.h"
#include "kvstation/Record.h"

namespace kvstation {

enum class CollectionState : std::uint32_t {
    Running,
    Done,     // `record` holds the result
    Failed,   // `failure` tells why
    Crashed,  // `exceptionCode` and `exceptionAddress` tell where
};

struct SharedCollection {
    static constexpr std::size_t kLongestNote = 256;
    static constexpr std::size_t kLongestFailure = 2048;
    static constexpr std::size_t kLongestTimes = 8192;

    std::atomic<CollectionState> state;
    std::uint32_t exceptionCode;
    std::uint64_t exceptionAddress;
    char step[kLongestNote];  // what the child does, such as "loading kvcstat64.dll"
    char call[kLongestNote];  // the last platform call; empty before the first
    bool wantsTimes;          // the parent's wish; `times` then tells them
    char times[kLongestTimes];
    char failure[kLongestFailure];
    RecordBytes record;
};

// A view of that memory.
class MappedCollection {
  public:
    // Throws Failure when the handle is none of such memory.
    explicit MappedCollection(HANDLE memory);
    MappedCollection(const MappedCollection&) = delete;
    MappedCollection& operator=(const MappedCollection&) = delete;
    ~MappedCollection();

    SharedCollection& operator*() const { return *m_shared; }
    SharedCollection* operator->() const { return m_shared; }

  private:
    SharedCollection* m_shared;
};

// Notes a UTF-8 text, cut to its room. A parent that looks in the middle of it finds it terminated.
template <std::size_t Size>
void note(char (&room)[Size], std::string_view text) {
    const std::size_t length = text.copy(room, Size - 1);
    room[length] = '\0';
}

// The text of a note. The last byte of its room is never anything but zero.
template <std::size_t Size>
std::string noted(const char (&room)[Size]) {
    return std::string(room);
}

}  // namespace kvstation
