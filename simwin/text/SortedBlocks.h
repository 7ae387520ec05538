// Numbers in an order that their owner tells, which stays quick to find and to add to however many there are.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

namespace simwin {

// One long vector would be moved by half at each number that is put in front: a million take minutes.
//
// The order is that of what the numbers stand for, which the owner knows. It is told by isBefore(number): whether the
// number stands in front of the place that is looked for.
template <class Number>
class SortedBlocks {
  public:
    SortedBlocks() = default;
    // Sorted by the owner.
    explicit SortedBlocks(const std::vector<Number>& sorted) {
        for (std::size_t from = 0; from < sorted.size(); from += kLongest / 2) {
            const std::size_t end = std::min(from + kLongest / 2, sorted.size());
            m_blocks.emplace_back(sorted.begin() + static_cast<std::ptrdiff_t>(from),
                                  sorted.begin() + static_cast<std::ptrdiff_t>(end));
        }
    }

    // The first number that is not in front of the place.
    template <class IsBefore>
    std::optional<Number> find(IsBefore isBefore) const {
        const auto block = blockOf(m_blocks, isBefore);
        if (block == m_blocks.end())
            return std::nullopt;
        return *std::partition_point(block->begin(), block->end(), isBefore);
    }

    // Puts the number at the place.
    template <class IsBefore>
    void insert(Number number, IsBefore isBefore) {
        auto block = blockOf(m_blocks, isBefore);
        if (block == m_blocks.end()) {
            if (m_blocks.empty() || m_blocks.back().size() == kLongest)
                m_blocks.emplace_back();
            m_blocks.back().push_back(number);
            return;
        }
        block->insert(std::partition_point(block->begin(), block->end(), isBefore), number);
        if (block->size() > kLongest)
            split(block);
    }

  private:
    static constexpr std::size_t kLongest = 512;
    using Block = std::vector<Number>;  // never empty

    template <class Blocks, class IsBefore>
    static auto blockOf(Blocks& blocks, IsBefore isBefore) {
        return std::partition_point(blocks.begin(), blocks.end(),
                                    [&](const Block& block) { return isBefore(block.back()); });
    }

    void split(typename std::vector<Block>::iterator block) {
        const auto middle = block->begin() + static_cast<std::ptrdiff_t>(block->size() / 2);
        Block second(middle, block->end());
        block->erase(middle, block->end());
        m_blocks.insert(block + 1, std::move(second));
    }

    std::vector<Block> m_blocks;
};

}  // namespace simwin
