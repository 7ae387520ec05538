#pragma once

#include <cstddef>

class IStringManager;

// What stands right before a string's characters, on the same block. The order and the sizes are those of the product's
// own framework, so that a library that was built with it can read, fill and release a string of ours.
struct StringData {
    IStringManager* manager;  // who allocates and frees the block
    int length;               // characters in use
    int capacity;             // characters that fit, without the terminator
    int references;           // more than 1: shared, copied before it is changed

    char* Text() noexcept { return reinterpret_cast<char*>(this + 1); }
    static StringData* Of(char* text) noexcept { return reinterpret_cast<StringData*>(text) - 1; }
};
static_assert(sizeof(void*) != 8 || sizeof(StringData) == 24);

// Allocates and frees strings' blocks, for whichever library holds the string: the order of the operations is the
// interface. Null when there is no memory.
class IStringManager {
  public:
    // Room for `capacity` characters of `characterSize` bytes and a terminator; one reference, no characters.
    virtual StringData* Allocate(int capacity, int characterSize) noexcept = 0;
    virtual void Free(StringData* data) noexcept = 0;
    // The same text in a block of another capacity; on failure the old block stays.
    virtual StringData* Reallocate(StringData* data, int capacity, int characterSize) noexcept = 0;
    // The one empty text that all empty strings share.
    virtual StringData* GetNilString() noexcept = 0;
    virtual IStringManager* Clone() noexcept = 0;

  protected:
    ~IStringManager() = default;
};

// The manager of this module's strings; their blocks are on the process heap.
IStringManager& GetStringManager() noexcept;

// The empty text of that manager: characters of either size end it.
struct NilString {
    StringData data;
    char terminator[8];
};
extern NilString g_nilString;
