#include "kvstation/collect/LastWords.h"

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/ImagePlace.h"

namespace kvstation {
namespace {

// As standard error's lines end on Windows.
constexpr std::string_view kLineEnd = "\r\n";

}  // namespace

LastWords& LastWords::add(std::string_view text) {
    m_length += text.copy(m_text.data() + m_length, m_text.size() - kLineEnd.size() - m_length);
    return *this;
}

LastWords& LastWords::addDigits(std::uint64_t number, std::size_t base, std::size_t digits) {
    std::array<char, 20> written{};
    std::size_t first = written.size();
    for (; number != 0 || written.size() - first < digits; number /= base)
        written[--first] = "0123456789ABCDEF"[number % base];
    return add({written.data() + first, written.size() - first});
}

LastWords& LastWords::addNumber(std::uint64_t number) {
    return addDigits(number, 10, 1);
}

LastWords& LastWords::addHex(std::uint64_t number, std::size_t digits) {
    return add("0x").addDigits(number, 16, digits);
}

LastWords& LastWords::addPlace(const void* address) {
    const ImagePlace place = placeOf(address);
    if (!place.image.empty())
        add(place.image).add("+");
    return addHex(place.offset);
}

void LastWords::end(HANDLE file) {
    m_length += kLineEnd.copy(m_text.data() + m_length, kLineEnd.size());
    DWORD written = 0;
    WriteFile(file, m_text.data(), static_cast<DWORD>(m_length), &written, nullptr);
    for (;;)
        TerminateProcess(GetCurrentProcess(), kExitFailure);
}

}  // namespace kvstation
