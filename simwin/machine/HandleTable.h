// Open handles of one kind, and what stands behind each.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace simwin {

struct Station;

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
};

struct OpenHandle {
    HandleKind kind;
    std::uintptr_t value;
    std::string what;  // such as the key's full path
};

// Values are given in rising order from 0x10000004 (the first key), 0x30000004 (the first process) and so on, and never
// twice, so that a handle that was closed is known as such and a test can name the one that it expects.
template <class Payload>
class HandleTable {
  public:
    struct Entry {
        std::uintptr_t value;
        Payload payload;
    };

    // What stands behind a handle, in a few words.
    using What = std::string (*)(const Station& station, const Payload& payload);

    HandleTable(HandleKind kind, What what)
        : m_kind(kind), m_what(what), m_last(static_cast<std::uintptr_t>(kind) << 28) {}

    std::uintptr_t open(Payload payload) {
        m_last += 4;
        m_entries.push_back({m_last, std::move(payload)});
        return m_last;
    }

    Payload* find(std::uintptr_t value) {
        const auto place = placeOf(value);
        return place != m_entries.end() && place->value == value ? &place->payload : nullptr;
    }

    bool isOpen(std::uintptr_t value) const { return std::ranges::binary_search(m_entries, value, {}, &Entry::value); }

    // False when it was not open.
    bool close(std::uintptr_t value) {
        const auto place = placeOf(value);
        if (place == m_entries.end() || place->value != value)
            return false;
        m_entries.erase(place);
        return true;
    }

    void tell(std::vector<OpenHandle>& all, const Station& station) const {
        for (const Entry& entry : m_entries)
            all.push_back({m_kind, entry.value, m_what(station, entry.payload)});
    }

    const std::vector<Entry>& entries() const { return m_entries; }

  private:
    typename std::vector<Entry>::iterator placeOf(std::uintptr_t value) {
        return std::ranges::lower_bound(m_entries, value, {}, &Entry::value);
    }

    HandleKind m_kind;
    What m_what;
    std::uintptr_t m_last;
    std::vector<Entry> m_entries;  // sorted, because values only rise
};

}  // namespace simwin
