// The fuzzer's bytes as a row of decisions. Behind the end every decision is 0, so that each input means something.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kvfuzz {

class InputReader {
  public:
    explicit InputReader(std::string_view bytes) : m_rest(bytes) {}

    bool isAtEnd() const { return m_rest.empty(); }

    std::uint8_t byte() {
        const std::string_view taken = bytes(1);
        return taken.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(taken[0]);
    }
    bool flag() { return (byte() & 1) != 0; }
    // 0 to `limit` - 1, which is at most 255.
    std::size_t below(std::size_t limit) { return byte() % limit; }
    std::uint16_t word() { return static_cast<std::uint16_t>(byte() | byte() << 8); }
    std::uint32_t number() { return word() | std::uint32_t{word()} << 16; }
    std::uint64_t large() { return number() | std::uint64_t{number()} << 32; }

    // Fewer at the end.
    std::string_view bytes(std::size_t count) {
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    template <class Table>
    const auto& oneOf(const Table& table) {
        return table[below(std::min<std::size_t>(std::size(table), 255))];
    }

  private:
    std::string_view m_rest;
};

}  // namespace kvfuzz
