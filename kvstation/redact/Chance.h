// Numbers by chance that are the same in every run.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace kvstation {

// They do not depend on what they are drawn for: the order of the draws decides alone.
class Chance {
  public:
    // From 0 on; `below` is at most 65536.
    unsigned next(unsigned below) {
        m_state = m_state * 1664525 + 1013904223;
        return (m_state >> 8) % below;
    }

    template <class Item>
    void shuffle(std::vector<Item>& items) {
        for (std::size_t i = items.size(); i > 1; --i)
            std::swap(items[i - 1], items[next(static_cast<unsigned>(i))]);
    }

    // Every item comes to stand at another's place.
    template <class Item>
    void derange(std::vector<Item>& items) {
        for (std::size_t i = items.size(); i > 1; --i)
            std::swap(items[i - 1], items[next(static_cast<unsigned>(i - 1))]);
    }

  private:
    std::uint32_t m_state = 1;
};

}  // namespace kvstation
