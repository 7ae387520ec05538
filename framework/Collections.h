// The framework's collections, as far as the module uses them. None owns what its pointers point to.
#pragma once

#include "framework/List.h"
#include "framework/Object.h"
#include "framework/String.h"

class CObList : public CObject, public List<CObject*> {};

class CPtrList : public CObject, public List<void*> {};

class CStringList : public CObject, public List<CString> {
  public:
    // Place of the first item that equals `text` exactly, or null.
    POSITION Find(const char* text) const noexcept;
};

// A map from text to object. Keys are compared exactly; the walk visits the entries in the order in which their keys
// were first stored, so that two runs on one station give one result.
class CMapStringToOb : public CObject {
  public:
    int GetCount() const noexcept { return m_entries.GetCount(); }
    bool IsEmpty() const noexcept { return m_entries.IsEmpty(); }

    // True, with the object, when the key is there.
    bool Lookup(const char* key, CObject*& value) const noexcept;
    // Stores the object under the key, in place of one that was there.
    void SetAt(const char* key, CObject* value);

    POSITION GetStartPosition() const noexcept { return m_entries.GetHeadPosition(); }
    void GetNextAssoc(POSITION& place, CString& key, CObject*& value) const;

    void RemoveAll() noexcept;

  private:
    struct Entry {
        CString key;
        CObject* value = nullptr;
        unsigned hash = 0;
        POSITION nextInBucket = nullptr;
    };
    static constexpr unsigned kBuckets = 17;

    Entry* FindEntry(const char* key, unsigned hash) const noexcept;

    List<Entry> m_entries;
    POSITION m_buckets[kBuckets] = {};
};
