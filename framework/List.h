#pragma once

// A place in a list or map; null is "no place": an empty list's head, or behind the last entry.
struct ListPlace;
using POSITION = ListPlace*;

// A list that grows at its tail and is walked from its head. Entries come in blocks of ten; they never move, so that a
// place stays valid until RemoveAll or the end of the list.
template <class Value>
class List {
  public:
    List() = default;
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    ~List() { RemoveAll(); }

    POSITION AddTail(const Value& value) {
        const int used = m_nCount % kBlockSize;
        if (used == 0)
            AddBlock();
        Entry* entry = &m_pLastBlock->entries[used];
        entry->value = value;
        if (m_pTail != nullptr)
            m_pTail->next = entry;
        else
            m_pHead = entry;
        m_pTail = entry;
        ++m_nCount;
        return PlaceOf(entry);
    }

    int GetCount() const noexcept { return m_nCount; }
    bool IsEmpty() const noexcept { return m_nCount == 0; }
    POSITION GetHeadPosition() const noexcept { return PlaceOf(m_pHead); }

    // The entry at `place`, which must be one; `place` moves on to the next.
    Value& GetNext(POSITION& place) const noexcept {
        Entry* entry = EntryAt(place);
        place = PlaceOf(entry->next);
        return entry->value;
    }
    Value& GetAt(POSITION place) const noexcept { return EntryAt(place)->value; }

    // Removes the entries; what they point to is the caller's.
    void RemoveAll() noexcept {
        while (m_pFirstBlock != nullptr) {
            Block* next = m_pFirstBlock->next;
            delete m_pFirstBlock;
            m_pFirstBlock = next;
        }
        m_pLastBlock = nullptr;
        m_pHead = m_pTail = nullptr;
        m_nCount = 0;
    }

  private:
    static constexpr int kBlockSize = 10;

    struct Entry {
        Entry* next = nullptr;
        Value value{};
    };
    struct Block {
        Block* next = nullptr;
        Entry entries[kBlockSize];
    };

    static POSITION PlaceOf(Entry* entry) noexcept { return reinterpret_cast<POSITION>(entry); }
    static Entry* EntryAt(POSITION place) noexcept { return reinterpret_cast<Entry*>(place); }

    void AddBlock() {
        auto* block = new Block;
        if (m_pLastBlock != nullptr)
            m_pLastBlock->next = block;
        else
            m_pFirstBlock = block;
        m_pLastBlock = block;
    }

    int m_nCount = 0;
    Block* m_pFirstBlock = nullptr;
    Block* m_pLastBlock = nullptr;
    Entry* m_pHead = nullptr;
    Entry* m_pTail = nullptr;
};
