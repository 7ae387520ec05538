// Random texts and numbers that are the same in every run of a test.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace kvtest {

class Random {
  public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}

    // 0 to limit - 1.
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(m_engine() % limit); }
    std::uint32_t number() { return static_cast<std::uint32_t>(m_engine()); }
    char between(char first, char last) {
        return static_cast<char>(first + static_cast<char>(below(static_cast<std::uint32_t>(last - first) + 1)));
    }

    // Digits for digits, letters for letters, of which those that are hexadecimal digits stay such.
    std::string sameShape(std::string_view text) {
        std::string made(text);
        for (char& one : made)
            for (const auto& [first, last] : {std::pair{'0', '9'}, {'a', 'f'}, {'g', 'z'}, {'A', 'F'}, {'G', 'Z'}})
                if (one >= first && one <= last) {
                    one = between(first, last);
                    break;
                }
        return made;
    }

    std::string bytes(std::size_t count) {
        std::string made(count, '\0');
        for (char& one : made)
            one = static_cast<char>(below(256));
        return made;
    }

  private:
    std::mt19937_64 m_engine;
};

}  // namespace kvtest
