#include "kvstation/redact/PhysicalStandIns.h"

#include <algorithm>
#include <vector>

#include "simwin/text/HexText.h"

namespace kvstation {
namespace {

constexpr std::size_t kWholeSize = 6;
constexpr std::size_t kShortestAsDigits = 4;

bool isNobodys(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char byte) { return byte == '\0'; }) ||
           std::ranges::all_of(bytes, [](char byte) { return byte == '\xFF'; });
}

std::string hexOf(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes)
        text += simwin::hexDigits(static_cast<unsigned char>(byte), 2);
    return text;
}

std::string bytesOfPairs(std::string_view pairs) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 3)
        bytes += simwin::byteOfHex(pairs.substr(i, 2)).value();
    return bytes;
}

}  // namespace

void PhysicalStandIns::learn(std::string_view shown, TextPlace) {
    learnBytes(bytesOfPairs(shown));
}

std::string PhysicalStandIns::standIn(std::string_view shown, TextPlace) {
    const std::string digits = hexOf(ofBytes(bytesOfPairs(shown)));
    PageText made = pageText(shown);
    for (std::size_t i = 0; i < made.size(); ++i)
        if (i % 3 != 2)
            made[i] = static_cast<unsigned char>(digits[i / 3 * 2 + i % 3]);
    return bytesOf(inCaseOf(pageText(shown), made));
}

std::string PhysicalStandIns::make(std::string_view bytes) {
    constexpr unsigned kCallsMany = 1;
    constexpr unsigned kIsLocal = 2;
    std::string made;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        made += static_cast<char>(static_cast<unsigned char>(m_chance.next(256)));
    if (bytes.size() >= kWholeSize) {
        const unsigned kind = (static_cast<unsigned char>(bytes[0]) & kCallsMany) | kIsLocal;
        made[0] = static_cast<char>((static_cast<unsigned char>(made[0]) & ~(kCallsMany | kIsLocal)) | kind);
    }
    return made;
}

void PhysicalStandIns::learnBytes(std::string_view bytes) {
    if (isNobodys(bytes))
        return;
    const auto [place, isNew] = m_standIns.emplace(bytes, "");
    if (!isNew)
        return;
    do {
        place->second = make(bytes);
    } while (place->second == bytes);
    if (bytes.size() >= kWholeSize)
        m_inside.add(std::string(bytes));
    if (bytes.size() >= kShortestAsDigits)
        m_addWord(pageText(hexOf(bytes)), pageText(hexOf(place->second)));
}

std::string PhysicalStandIns::ofBytes(std::string_view bytes) {
    const auto found = m_standIns.find(std::string(bytes));
    return found != m_standIns.end() ? found->second : std::string(bytes);
}

// Of two that overlap the last in their order is written over the other.
void PhysicalStandIns::replaceIn(std::string& data) const {
    std::map<std::string_view, std::vector<std::size_t>> places;
    for (std::size_t i = 0; i + kWholeSize <= data.size(); ++i)
        m_inside.eachOf(std::string_view(data).substr(i),
                        [&](const std::string& bytes) { places[bytes].push_back(i); });
    for (const auto& [bytes, all] : places)
        for (std::size_t end = 0; const std::size_t place : all)
            if (place >= end) {
                data.replace(place, bytes.size(), m_standIns.at(std::string(bytes)));
                end = place + bytes.size();
            }
}

}  // namespace kvstation
