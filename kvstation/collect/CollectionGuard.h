// On what terms this computer is collected from.
#pragma once

#include <chrono>
#include <utility>

namespace kvstation {

struct CollectionTerms {
    static constexpr std::chrono::seconds kUsualLimit{60};

    // A collection that takes longer ends the tool, with one line that names its last question.
    std::chrono::seconds limit = kUsualLimit;
    // The module is told the version of Windows that a program without a manifest is told.
    bool asCaller = false;
};

// A verb holds one while it collects on this computer (Stage.h). Where a described station answers, it is held to no
// purpose and no harm.
class CollectionGuard {
  public:
    explicit CollectionGuard(const CollectionTerms& terms) : m_before(std::exchange(s_terms, terms)) {}
    CollectionGuard(const CollectionGuard&) = delete;
    CollectionGuard& operator=(const CollectionGuard&) = delete;
    ~CollectionGuard() { s_terms = m_before; }

    // Of the guard that is held; without one the usual ones.
    static const CollectionTerms& terms() { return s_terms; }

  private:
    static inline CollectionTerms s_terms;

    CollectionTerms m_before;
};

}  // namespace kvstation
