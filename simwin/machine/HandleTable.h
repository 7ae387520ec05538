// Open handles of one kind, and what stands behind each.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace simwin {

// Kinds of things that a program opens and has to close.
enum class HandleKind : std::uint8_t {
    RegistryKey = 1,
    Library,
    Process,
    Token,
    Find,
    GlobalBlock,
    LocalBlock,
    NetBuffer,     // NetApiBufferFree's
    CitrixBuffer,  // the Citrix interface's own
    Last = CitrixBuffer,
};

// Values are given in rising order from 0x10000004 (the first key), 0x20000004 (the first library) and so on, and
// never twice, so that a handle that was closed is known as such and a test can name the one that it expects.
template <class Payload>
class HandleTable {
  public:
    struct Entry {
        std::uintptr_t value;
        Payload payload;
    };

    explicit HandleTable(HandleKind kind) : m_last(static_cast<std::uintptr_t>(kind) << 28) {}

    std::uintptr_t open(Payload payload) {
        m_last += 4;
        m_entries.push_back({m_last, std::move(payload)});
        return m_last;
    }

    Payload* find(std::uintptr_t value) {
        const auto place = placeOf(value);
        return place != m_entries.end() && place->value == value ? &place->payload : nullptr;
    }

    // False when it was not open.
    bool close(std::uintptr_t value) {
        const auto place = placeOf(value);
        if (place == m_entries.end() || place->value != value)
            return false;
        m_entries.erase(place);
        return true;
    }

    const std::vector<Entry>& entries() const { return m_entries; }

  private:
    typename std::vector<Entry>::iterator placeOf(std::uintptr_t value) {
        return std::lower_bound(m_entries.begin(), m_entries.end(), value,
                                [](const Entry& entry, std::uintptr_t wanted) { return entry.value < wanted; });
    }

    std::uintptr_t m_last;
    std::vector<Entry> m_entries;  // sorted, because values only rise
};

}  // namespace simwin
