#include "kvstation/StandIns.h"

#include <algorithm>
#include <vector>

#include "simwin/Address.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kShortestWord = 3;     // shorter ones are replaced in their own texts alone
constexpr std::size_t kShortestInside = 5;   // from here on also inside longer words
constexpr std::size_t kShortNameLength = 6;  // of DHINRI~1
constexpr std::string_view kAccented = "\xE0\xE4\xE8\xE9\xF6\xFC";

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}
bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           static_cast<unsigned char>(character) >= 0xC0;
}
bool isWord(char character) {
    return isDigit(character) || isLetter(character);
}

std::string lower(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) { return simwin::toLower(c); });
    return result;
}

// The stand-in in the letter case of the text whose place it takes.
std::string inCaseOf(std::string_view original, std::string_view standIn) {
    std::string result(standIn);
    for (std::size_t i = 0; i < result.size() && i < original.size(); ++i)
        if (isLetter(original[i]) && simwin::toLower(original[i]) != original[i])
            result[i] = simwin::toUpper(result[i]);
    return result;
}

// Calls visit(run, isWord) for the runs of a text in their order.
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

bool isDotted(char character) {
    return isDigit(character) || character == '.';
}

bool isNobodys(std::string_view address) {
    return address == "0.0.0.0" || address == "127.0.0.1" || address.starts_with("255.");
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

}  // namespace

std::set<std::string> wordsOf(std::string_view text) {
    std::set<std::string> words;
    eachRun(text, isWord, [&](std::string_view run, bool isRun, std::string_view) {
        if (isRun)
            words.insert(lower(run));
    });
    return words;
}

// Numbers that do not depend on the secrets: the order in which these are met decides alone.
unsigned StandIns::next(unsigned below) {
    m_state = m_state * 1664525 + 1013904223;
    return (m_state >> 8) % below;
}

std::string StandIns::make(std::string_view word) {
    std::string result;
    for (const char character : word)
        if (isDigit(character))
            result += static_cast<char>('0' + next(10));
        else if (static_cast<unsigned char>(character) >= 0xC0)
            result += kAccented[next(kAccented.size())];
        else
            result += static_cast<char>('a' + next(26));
    return result;
}

const std::string& StandIns::standInFor(const std::string& lowerWord) {
    const auto known = m_words.find(lowerWord);
    if (known != m_words.end())
        return known->second;
    const auto isTaken = [&](const std::string& word) {
        return word == lowerWord || m_vocabulary.contains(word) ||
               std::ranges::any_of(m_words, [&](const auto& other) { return other.second == word; });
    };
    std::string made = make(lowerWord);
    for (int tries = 0; tries < 100 && isTaken(made); ++tries)
        made = make(lowerWord);
    return m_words.emplace(lowerWord, made).first->second;
}

void StandIns::addWords(std::string_view text) {
    for (const std::string& word : wordsOf(text))
        standInFor(word);
}

std::string StandIns::whole(std::string_view text) {
    std::string result;
    eachRun(text, isWord, [&](std::string_view run, bool isRun, std::string_view) {
        result += isRun ? inCaseOf(run, standInFor(lower(run))) : std::string(run);
    });
    return result;
}

std::string StandIns::replaceWord(std::string_view word, bool isShortName) const {
    const std::string key = lower(word);
    const auto usable = [&](const std::string& secret) {
        return secret.size() >= kShortestWord && !m_vocabulary.contains(secret);
    };
    if (m_vocabulary.contains(key))
        return std::string(word);
    if (const auto known = m_words.find(key); known != m_words.end() && usable(key))
        return inCaseOf(word, known->second);
    std::vector<std::pair<std::string_view, std::string_view>> longest(m_words.begin(), m_words.end());
    std::ranges::stable_sort(longest, [](const auto& a, const auto& b) { return a.first.size() > b.first.size(); });
    std::string result(word);
    for (const auto& [secret, standIn] : longest) {
        if (!usable(std::string(secret)))
            continue;
        if (isShortName && key.size() == kShortNameLength && secret.starts_with(key))
            return inCaseOf(word, standIn.substr(0, kShortNameLength));
        const std::size_t place = secret.size() >= kShortestInside ? key.find(secret) : std::string::npos;
        if (place != std::string::npos && result.substr(place, secret.size()) == word.substr(place, secret.size()))
            result.replace(place, secret.size(), inCaseOf(word.substr(place, secret.size()), standIn));
    }
    return result;
}

std::string StandIns::inside(std::string_view text) const {
    std::string withAddresses;
    eachRun(text, isDotted, [&](std::string_view run, bool isRun, std::string_view) {
        withAddresses += isRun ? address(run) : std::string(run);
    });
    std::string result;
    eachRun(withAddresses, isWord, [&](std::string_view run, bool isRun, std::string_view rest) {
        result += isRun ? replaceWord(run, rest.starts_with('~')) : std::string(run);
    });
    return result;
}

// An octet keeps its number of digits and whether it ends in 0, because what contains "0.0.0.0" is no address to the
// module.
void StandIns::addAddress(std::string_view dotted) {
    if (!simwin::parseDotted(dotted) || isNobodys(dotted) || m_addresses.contains(std::string(dotted)))
        return;
    const auto isTaken = [&](const std::string& made) {
        return made == dotted ||
               std::ranges::any_of(m_addresses, [&](const auto& other) { return other.second == made; });
    };
    std::string made;
    do {
        made.clear();
        eachRun(dotted, isDigit, [&](std::string_view octet, bool isRun, std::string_view) {
            if (!isRun || octet == "0") {
                made += octet;
                return;
            }
            const bool isRound = octet.ends_with('0');
            const unsigned last = isRound ? 0 : 1 + next(9);
            if (octet.size() == 1)
                made += std::to_string(last);
            else
                made += std::to_string((octet.size() == 2 ? 1 + next(9) : 10 + next(14)) * 10 + last);
        });
    } while (isTaken(made));
    m_addresses.emplace(dotted, made);
}

std::string StandIns::address(std::string_view dotted) const {
    const auto found = m_addresses.find(std::string(dotted));
    return found != m_addresses.end() ? found->second : std::string(dotted);
}

// Written as digits it is a word like any other.
void StandIns::addPhysical(std::string_view bytes) {
    const auto [place, isNew] = m_physical.emplace(bytes, "");
    if (!isNew)
        return;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        place->second += static_cast<char>(static_cast<unsigned char>(next(256)));
    if (bytes.size() >= 4)
        m_words.insert_or_assign(hexOf(bytes), hexOf(place->second));
}

std::string StandIns::physical(std::string_view bytes) const {
    const auto found = m_physical.find(std::string(bytes));
    return found != m_physical.end() ? found->second : std::string(bytes);
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
        place->second = least + (next(1 << 16) << 16 | next(1 << 16)) % (most - least + 1);
    return place->second;
}

}  // namespace kvstation
