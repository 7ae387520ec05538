// What the registry's groups share.
#pragma once

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {

// A key of the suite's own, open for this object's life; null when it could not be opened, which every assertion on it
// then tells.
class Key {
  public:
    Key(const World& world, const char* below) { RegOpenKeyA(HKEY_CURRENT_USER, world.key(below).c_str(), &m_key); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (m_key != nullptr)
            RegCloseKey(m_key);
    }

    HKEY get() const { return m_key; }

  private:
    HKEY m_key = nullptr;
};

// A handle that was a key's. Nothing may be opened before it is used.
inline HKEY closedKey(const World& world) {
    return Key(world, "Empty").get();
}

}  // namespace conformance
