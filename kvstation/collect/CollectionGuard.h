// The time that a collection on this computer gets.
#pragma once

#include <chrono>
#include <utility>

namespace kvstation {

// A verb holds one while it collects: a collection on this computer (Stage.h) that takes longer ends the tool, with one
// line that names its last question. Where a described station answers, it is held to no purpose and no harm.
class CollectionGuard {
  public:
    static constexpr std::chrono::seconds kUsualLimit{60};

    explicit CollectionGuard(std::chrono::seconds limit) : m_before(std::exchange(s_limit, limit)) {}
    CollectionGuard(const CollectionGuard&) = delete;
    CollectionGuard& operator=(const CollectionGuard&) = delete;
    ~CollectionGuard() { s_limit = m_before; }

    // Of the guard that is held; without one the usual limit.
    static std::chrono::seconds limit() { return s_limit; }

  private:
    static inline std::chrono::seconds s_limit = kUsualLimit;

    std::chrono::seconds m_before;
};

}  // namespace kvstation
