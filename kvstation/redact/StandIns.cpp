#include "kvstation/redact/StandIns.h"

#include <algorithm>
#include <vector>

#include "kvstation/redact/NamedParts.h"
#include "kvstation/redact/PageLetters.h"
#include "kvstation/redact/WindowsWords.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kShortestWord = 3;     // shorter ones are replaced in their own texts alone
constexpr std::size_t kShortestInside = 5;   // from here on also inside longer words
constexpr std::size_t kShortestNumber = 5;   // shorter ones stay where what they were joined to is missing
constexpr std::size_t kShortestJoined = 4;   // PC-1
constexpr std::size_t kShortNameLength = 6;  // of DHINRI~1
constexpr std::size_t kPhysicalSize = 6;
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz";

bool isUpper(char character) {
    return isLetter(character) && simwin::toLower(character) != character;
}
bool isLower(char character) {
    return isLetter(character) && !isUpper(character);
}
bool isNumber(std::string_view word) {
    return std::ranges::all_of(word, isDigit);
}

// The stand-in in the letter case of the text whose place it takes. A letter that stands for a digit, as in a physical
// address, follows the others.
std::string inCaseOf(std::string_view original, std::string_view standIn) {
    const bool isCapital = std::ranges::any_of(original, isUpper) && std::ranges::none_of(original, isLower);
    std::string result(standIn);
    for (std::size_t i = 0; i < result.size() && i < original.size(); ++i)
        if (isLetter(original[i]) ? isUpper(original[i]) : isCapital)
            result[i] = simwin::toUpper(result[i]);
    return result;
}

// Of two that are as long the first in their order is to be taken.
bool isLonger(std::string_view word, std::string_view other) {
    return word.size() != other.size() ? word.size() > other.size() : word < other;
}

// Calls visit(run, isRun, rest) for the runs of a text in their order.
template <class Visit>
void eachRun(std::string_view text, bool (*belongs)(char), Visit&& visit) {
    while (!text.empty()) {
        const bool isRun = belongs(text.front());
        const auto end = std::ranges::find_if(text, [&](char c) { return belongs(c) != isRun; });
        const auto length = static_cast<std::size_t>(end - text.begin());
        visit(text.substr(0, length), isRun, text.substr(length));
        text.remove_prefix(length);
    }
}

bool isNobodysPhysical(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char byte) { return byte == '\0'; }) ||
           std::ranges::all_of(bytes, [](char byte) { return byte == '\xFF'; });
}

// What may stand in a character's place.
std::string_view lettersFor(char character) {
    return isDigit(character) ? kDigits : isPageLetter(character) ? pageLetters() : kLetters;
}

// The next word of the same form, as a counter goes on: az becomes ba, and the last one the first.
std::string following(std::string word) {
    for (std::size_t i = word.size(); i-- > 0;) {
        const std::string_view all = lettersFor(word[i]);
        const std::size_t place = all.find(word[i]) + 1;
        word[i] = all[place % all.size()];
        if (place != all.size())
            break;
    }
    return word;
}

std::string hexOf(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += digits[static_cast<unsigned char>(byte) >> 4];
        text += digits[static_cast<unsigned char>(byte) & 0xF];
    }
    return text;
}

// Of pairs with one character between them.
std::string bytesOfPairs(std::string_view pairs) {
    std::string bytes;
    const auto valueOf = [&](std::size_t place) {
        const char digit = simwin::toLower(pairs[place]);
        return isDigit(digit) ? digit - '0' : digit - 'a' + 10;
    };
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 3)
        bytes += static_cast<char>(static_cast<unsigned char>(valueOf(i) * 16 + valueOf(i + 1)));
    return bytes;
}

}  // namespace

std::set<std::string> wordsOf(std::string_view text) {
    std::set<std::string> words;
    eachRun(text, isWordCharacter, [&](std::string_view run, bool isRun, std::string_view) {
        if (isRun)
            words.insert(simwin::lowerCase(run));
    });
    return words;
}

std::string StandIns::make(std::string_view word) {
    std::string result;
    for (const char character : word) {
        const std::string_view all = lettersFor(character);
        result += all[m_chance.next(static_cast<unsigned>(all.size()))];
    }
    return result;
}

// Two words never share a stand-in, or two printers would become one. Of one digit there are ten: where the others are
// used up, a word stands for itself.
std::string StandIns::makeFree(const std::string& lowerWord) {
    const auto isFree = [&](const std::string& word) {
        return word != lowerWord && !m_made.contains(word) &&
               (word.size() < kShortestWord || !m_vocabulary.contains(word));
    };
    const std::string first = make(lowerWord);
    std::string made = first;
    while (!isFree(made)) {
        made = following(made);
        if (made == first) {
            made = lowerWord;
            break;
        }
    }
    m_made.insert(made);
    return made;
}

const std::string& StandIns::standInFor(const std::string& lowerWord) {
    const auto known = m_words.find(lowerWord);
    if (known != m_words.end())
        return known->second.standIn;
    const Word& word = m_words.emplace(lowerWord, Word{makeFree(lowerWord), false}).first->second;
    if (!isNumber(lowerWord) || lowerWord.size() >= kShortestNumber)
        lookFor(lowerWord);
    return word.standIn;
}

void StandIns::lookFor(const std::string& lowerWord) {
    m_words.at(lowerWord).standsAlone = true;
    if (lowerWord.size() < kShortestInside || m_vocabulary.contains(lowerWord))
        return;
    m_inside.add(lowerWord);
    if (lowerWord.size() <= kShortNameLength)
        return;
    std::string& longest = m_longest[isNumber(lowerWord) ? 1 : 0][lowerWord.substr(0, kShortNameLength)];
    if (isLonger(lowerWord, longest))
        longest = lowerWord;
}

// The digits at its start stay: the module goes by the one in settings such as "1net".
std::string StandIns::replaceOther(std::string_view word) {
    const auto [place, isNew] = m_others.try_emplace(simwin::lowerCase(word));
    if (isNew) {
        const std::string& key = place->first;
        const std::size_t kept = isNumber(word) ? 1 : std::min(key.find_first_not_of(kDigits), key.size());
        place->second = key.substr(0, kept) + makeFree(key.substr(kept));
    }
    return inCaseOf(word, place->second);
}

void StandIns::addName(std::string_view text) {
    eachRun(text, isNameCharacter, [&](std::string_view run, bool isRun, std::string_view) {
        if (isRun)
            addJoined(run);
    });
}

void StandIns::addJoined(std::string_view joined) {
    while (!joined.empty() && !isWordCharacter(joined.front()))
        joined.remove_prefix(1);
    while (!joined.empty() && !isWordCharacter(joined.back()))
        joined.remove_suffix(1);
    const std::set<std::string> words = wordsOf(joined);
    for (const std::string& word : words)
        standInFor(word);
    if (std::ranges::all_of(joined, isWordCharacter)) {
        if (!joined.empty())
            lookFor(simwin::lowerCase(joined));
        return;
    }
    const auto isCommon = [&](const std::string& word) { return m_vocabulary.contains(word); };
    const std::string key = simwin::lowerCase(joined);
    if (key.size() >= kShortestJoined && !std::ranges::all_of(words, isCommon))
        m_joined.add(key);
}

void StandIns::learn(std::string_view text, TextPlace place) {
    for (const NamedPart& part : namedPartsOf(text)) {
        if (part.kind == PartKind::Computer || part.kind == PartKind::User)
            addName(part.text);
        else if (part.kind == PartKind::ServerAddress)
            addAddress(part.text);
        else if (part.kind == PartKind::Physical)
            addPhysical(bytesOfPairs(part.text));
        else if (part.kind == PartKind::Address && place == TextPlace::Anywhere)
            m_addresses.note(part.text, false);
    }
}

std::string StandIns::whole(std::string_view text) {
    std::string result;
    eachRun(text, isWordCharacter, [&](std::string_view run, bool isRun, std::string_view) {
        result += isRun ? inCaseOf(run, standInFor(simwin::lowerCase(run))) : std::string(run);
    });
    return result;
}

std::string StandIns::knownWords(std::string_view text) const {
    std::string result;
    eachRun(text, isWordCharacter, [&](std::string_view run, bool isRun, std::string_view) {
        const auto known = isRun ? m_words.find(simwin::lowerCase(run)) : m_words.end();
        result += known != m_words.end() ? inCaseOf(run, known->second.standIn) : std::string(run);
    });
    return result;
}

bool StandIns::isUsable(const std::string& secret, TextPlace place) const {
    const auto known = m_words.find(secret);
    return secret.size() >= kShortestWord && !m_vocabulary.contains(secret) && known != m_words.end() &&
           known->second.standsAlone && (place == TextPlace::Anywhere || !isNumber(secret));
}

std::string StandIns::replaceWord(std::string_view word, bool isShortName, TextPlace place) const {
    const std::string key = simwin::lowerCase(word);
    if (m_vocabulary.contains(key))
        return std::string(word);
    if (isUsable(key, place))
        return inCaseOf(word, m_words.at(key).standIn);
    const std::string made = isShortName ? shortNameOf(key, place) : std::string();
    return made.empty() ? replaceInside(word, key, place) : inCaseOf(word, made);
}

// The beginning of the stand-in of the longest name that is shortened so; empty where none is.
std::string StandIns::shortNameOf(const std::string& lowerWord, TextPlace place) const {
    std::string longest;
    for (const auto& words : m_longest)
        if (const auto known = words.find(lowerWord);
            known != words.end() && isUsable(known->second, place) && isLonger(known->second, longest))
            longest = known->second;
    return longest.empty() ? longest : m_words.at(longest).standIn.substr(0, kShortNameLength);
}

// The longest first, and those of one length in their order.
std::string StandIns::replaceInside(std::string_view word, const std::string& lowerWord, TextPlace place) const {
    struct Hit {
        const std::string* secret;
        std::size_t place;
    };
    std::vector<Hit> hits;
    for (std::size_t i = 0; i + kShortestInside <= lowerWord.size(); ++i)
        m_inside.eachOf(std::string_view(lowerWord).substr(i), [&](const std::string& secret) {
            if (isUsable(secret, place))
                hits.push_back({&secret, i});
        });
    std::ranges::stable_sort(hits,
                             [](const Hit& left, const Hit& right) { return isLonger(*left.secret, *right.secret); });
    std::string result(word);
    std::vector<bool> isReplaced(word.size());
    for (const Hit& hit : hits) {
        const auto begin = isReplaced.begin() + static_cast<std::ptrdiff_t>(hit.place);
        const auto end = begin + static_cast<std::ptrdiff_t>(hit.secret->size());
        if (std::find(begin, end, true) != end)
            continue;
        std::fill(begin, end, true);
        result.replace(hit.place, hit.secret->size(),
                       inCaseOf(word.substr(hit.place, hit.secret->size()), m_words.at(*hit.secret).standIn));
    }
    return result;
}

// The length of the longest joined name that stands here, or 0.
std::size_t StandIns::joinedAt(std::string_view text, std::string_view lowerText, std::size_t place) const {
    std::size_t longest = 0;
    m_joined.eachOf(lowerText.substr(place), [&](const std::string& joined) {
        const std::size_t end = place + joined.size();
        if (longest == 0 && (end == text.size() || !isWordCharacter(text[end])))
            longest = joined.size();
    });
    return longest;
}

std::string StandIns::replaceText(std::string_view text, TextPlace place) {
    std::string result;
    const std::string lowerText = simwin::lowerCase(text);
    for (std::size_t i = 0; i < text.size();) {
        if (!isWordCharacter(text[i])) {
            result += text[i++];
            continue;
        }
        if (const std::size_t joined = joinedAt(text, lowerText, i); joined != 0) {
            result += knownWords(text.substr(i, joined));
            i += joined;
            continue;
        }
        const auto end = std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(), isWordCharacter);
        const std::string_view word = text.substr(i, static_cast<std::size_t>(end - text.begin()) - i);
        std::string made = replaceWord(word, end != text.end() && *end == '~', place);
        result +=
            m_leavesNothing && made == word && isTelling(text, word, place) ? replaceOther(word) : std::move(made);
        i += word.size();
    }
    return result;
}

std::string StandIns::replacePhysical(std::string_view text) const {
    const std::string digits = hexOf(physical(bytesOfPairs(text)));
    std::string result(text);
    for (std::size_t i = 0; i < result.size(); ++i)
        if (i % 3 != 2)
            result[i] = digits[i / 3 * 2 + i % 3];
    return inCaseOf(text, result);
}

std::string StandIns::inside(std::string_view text, TextPlace place) {
    std::string result;
    for (const NamedPart& part : namedPartsOf(text)) {
        switch (part.kind) {
            case PartKind::Text:
                result += replaceText(part.text, place);
                break;
            case PartKind::Computer:
            case PartKind::User:
                result += knownWords(part.text);
                break;
            case PartKind::Physical:
                result += replacePhysical(part.text);
                break;
            case PartKind::LongAddress:
                result += m_longAddresses.standIn(part.text);
                break;
            case PartKind::ServerAddress:
                result += address(part.text);
                break;
            case PartKind::Address:
                result += place == TextPlace::Version && !m_addresses.isCertain(part.text) ? std::string(part.text)
                                                                                           : address(part.text);
                break;
        }
    }
    return result;
}

std::string StandIns::longAddress(std::string_view bytes) {
    IPv6 address{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        address.at(i / 2) = static_cast<std::uint16_t>(address.at(i / 2) << 8 | static_cast<unsigned char>(bytes[i]));
    std::string made;
    for (const std::uint16_t group : m_longAddresses.standIn(address))
        made += {static_cast<char>(group >> 8), static_cast<char>(group & 0xFF)};
    return made;
}

std::string StandIns::makePhysical(std::string_view bytes) {
    constexpr unsigned kCallsMany = 1;
    constexpr unsigned kIsLocal = 2;
    std::string made;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        made += static_cast<char>(static_cast<unsigned char>(m_chance.next(256)));
    if (bytes.size() >= kPhysicalSize) {
        const unsigned kind = (static_cast<unsigned char>(bytes[0]) & kCallsMany) | kIsLocal;
        made[0] = static_cast<char>((static_cast<unsigned char>(made[0]) & ~(kCallsMany | kIsLocal)) | kind);
    }
    return made;
}

// Written as digits it is a word like any other.
void StandIns::addPhysical(std::string_view bytes) {
    if (isNobodysPhysical(bytes))
        return;
    const auto [place, isNew] = m_physical.emplace(bytes, "");
    if (!isNew)
        return;
    do {
        place->second = makePhysical(bytes);
    } while (place->second == bytes);
    if (bytes.size() >= kPhysicalSize)
        m_physicalInside.add(std::string(bytes));
    if (bytes.size() < 4)
        return;
    m_words.insert_or_assign(hexOf(bytes), Word{hexOf(place->second), true});
    lookFor(hexOf(bytes));
    m_made.insert(hexOf(place->second));
}

std::string StandIns::physical(std::string_view bytes) const {
    const auto found = m_physical.find(std::string(bytes));
    return found != m_physical.end() ? found->second : std::string(bytes);
}

// Of two that overlap the last in their order is written over the other.
std::string StandIns::physicalInside(std::string_view data) const {
    std::map<std::string_view, std::vector<std::size_t>> places;
    for (std::size_t i = 0; i + kPhysicalSize <= data.size(); ++i)
        m_physicalInside.eachOf(data.substr(i), [&](const std::string& bytes) { places[bytes].push_back(i); });
    std::string result(data);
    for (const auto& [bytes, all] : places)
        for (std::size_t end = 0; const std::size_t place : all)
            if (place >= end) {
                result.replace(place, bytes.size(), m_physical.at(std::string(bytes)));
                end = place + bytes.size();
            }
    return result;
}

std::uint32_t StandIns::number(std::uint32_t value) {
    if (value == 0)
        return 0;
    const auto [place, isNew] = m_numbers.emplace(value, 0);
    std::uint32_t least = 1;
    while (value / least >= 10)
        least *= 10;
    const std::uint32_t most = least > 400000000 ? 0xFFFFFFFF : least * 10 - 1;
    while (isNew && (place->second == 0 || place->second == value))
        place->second = least + (m_chance.next(1 << 16) << 16 | m_chance.next(1 << 16)) % (most - least + 1);
    return place->second;
}

}  // namespace kvstation
