#include "framework/Collections.h"

#include <algorithm>
#include <iterator>

namespace {

unsigned HashOf(const char* key) noexcept {
    unsigned hash = 0;
    for (; *key != '\0'; ++key)
        hash = hash * 33 + static_cast<unsigned char>(*key);
    return hash;
}

}  // namespace

POSITION CStringList::Find(const char* text) const noexcept {
    POSITION next = GetHeadPosition();
    while (next != nullptr) {
        const POSITION place = next;
        if (GetNext(next) == text)
            return place;
    }
    return nullptr;
}

CMapStringToOb::Entry* CMapStringToOb::FindEntry(const char* key, unsigned hash) const noexcept {
    POSITION place = m_buckets[hash % kBuckets];
    while (place != nullptr) {
        Entry& entry = m_entries.GetAt(place);
        if (entry.hash == hash && entry.key == key)
            return &entry;
        place = entry.nextInBucket;
    }
    return nullptr;
}

bool CMapStringToOb::Lookup(const char* key, CObject*& value) const noexcept {
    const Entry* entry = FindEntry(key, HashOf(key));
    if (entry == nullptr)
        return false;
    value = entry->value;
    return true;
}

void CMapStringToOb::SetAt(const char* key, CObject* value) {
    const unsigned hash = HashOf(key);
    if (Entry* entry = FindEntry(key, hash)) {
        entry->value = value;
        return;
    }
    POSITION& bucket = m_buckets[hash % kBuckets];
    bucket = m_entries.AddTail(Entry{key, value, hash, bucket});
}

void CMapStringToOb::GetNextAssoc(POSITION& place, CString& key, CObject*& value) const {
    const Entry& entry = m_entries.GetNext(place);
    key = entry.key;
    value = entry.value;
}

void CMapStringToOb::RemoveAll() noexcept {
    m_entries.RemoveAll();
    std::fill(std::begin(m_buckets), std::end(m_buckets), nullptr);
}
