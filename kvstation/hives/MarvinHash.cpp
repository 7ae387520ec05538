#include "kvstation/hives/MarvinHash.h"

#include <bit>

#include "kvstation/hives/LittleEndian.h"

namespace kvstation {
namespace {

struct State {
    std::uint32_t low;
    std::uint32_t high;

    void mix(std::uint32_t word) {
        low += word;
        high ^= low;
        low = std::rotl(low, 20) + high;
        high = std::rotl(high, 9) ^ low;
        low = std::rotl(low, 27) + high;
        high = std::rotl(high, 19);
    }
};

// What is left at the end, and behind it the byte that marks the end.
std::uint32_t lastWord(std::string_view rest) {
    std::uint32_t word = 0x80;
    for (std::size_t i = rest.size(); i-- > 0;)
        word = word << 8 | static_cast<unsigned char>(rest[i]);
    return word;
}

}  // namespace

std::uint64_t marvinHash(std::string_view bytes, std::uint64_t seed) {
    State state{static_cast<std::uint32_t>(seed), static_cast<std::uint32_t>(seed >> 32)};
    const std::size_t whole = bytes.size() / sizeof(std::uint32_t) * sizeof(std::uint32_t);
    for (std::size_t place = 0; place < whole; place += sizeof(std::uint32_t))
        state.mix(numberAt(bytes, place));
    state.mix(lastWord(bytes.substr(whole)));
    state.mix(0);
    return std::uint64_t{state.high} << 32 | state.low;
}

}  // namespace kvstation
