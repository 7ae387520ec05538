// Physical addresses. Their stand-ins have as many bytes, and are as long as texts.
#include <algorithm>
#include <map>
#include <vector>

#include "kvstation/redact/Beginnings.h"
#include "kvstation/redact/TextForm.h"
#include "simwin/text/HexText.h"

namespace kvstation {
namespace {

constexpr std::size_t kWholeSize = 6;
constexpr std::size_t kMostPairs = 16;
constexpr std::size_t kShortestAsDigits = 4;

std::size_t physicalAt(PageTextView text, std::size_t place) {
    const auto at = [&](std::size_t one) { return characterAt(text, one); };
    const char32_t joint = at(place + 2);
    if ((joint != U'-' && joint != U':') || isWordCharacter(characterBefore(text, place)))
        return 0;
    std::size_t pairs = 0;
    std::size_t end = place;
    while (isHexDigit(at(end)) && isHexDigit(at(end + 1)) && !isWordCharacter(at(end + 2))) {
        ++pairs;
        end += 2;
        if (at(end) != joint)
            break;
        ++end;
    }
    if (at(end - 1) == joint)
        --end;
    return pairs >= kWholeSize && pairs <= kMostPairs ? end - place : 0;
}

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

// A stand-in says that it was made up by the place itself (is locally administered), and calls one or many as the
// address did. What has all bits clear or set is nobody's and stays.
class PhysicalStandIns : public FormStandIns {
  public:
    // Written as digits, an address that has enough bytes is a word like any other.
    PhysicalStandIns(Chance& chance, const AddWord& addWord) : m_chance(chance), m_addWord(addWord) {}

    // Pairs of digits with one character between them.
    void learn(std::string_view shown, TextPlace place) override;
    std::string standIn(std::string_view shown, TextPlace place) override;

    void learnBytes(std::string_view bytes) override;
    // The address itself when it is not known.
    std::string ofBytes(std::string_view bytes) override;
    void replaceIn(std::string& data) const override;

  private:
    std::string make(std::string_view bytes);

    Chance& m_chance;
    AddWord m_addWord;
    std::map<std::string, std::string> m_standIns;  // bytes
    Beginnings m_inside;                            // those that are looked for in data
};

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

}  // namespace

const TextForm kPhysicalForm = {physicalAt, false, makeStandIns<PhysicalStandIns>};

}  // namespace kvstation
