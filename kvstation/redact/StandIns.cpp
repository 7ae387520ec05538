#include "kvstation/redact/StandIns.h"

#include <algorithm>
#include <vector>

#include "kvstation/redact/WindowsWords.h"

namespace kvstation {
namespace {

// By weightOf.
constexpr std::size_t kShortestWord = 3;    // shorter ones are replaced in their own texts alone
constexpr std::size_t kShortestInside = 5;  // from here on also inside longer words
constexpr std::size_t kShortestNumber = 5;  // shorter ones stay where what they were joined to is missing
constexpr std::size_t kShortestJoined = 4;  // PC-1
constexpr std::size_t kShortNameSize = 6;   // bytes of DHINRI~1, before its sign

bool isNumber(PageTextView word) {
    return std::ranges::all_of(word, isDigit);
}

// Of two that are as long the first in their order is to be taken.
bool isLonger(PageTextView word, PageTextView other) {
    return word.size() != other.size() ? word.size() > other.size() : word < other;
}

// Calls visit(run, isRun) for the runs of a text in their order.
template <class Visit>
void eachRun(PageTextView text, bool (*belongs)(char32_t), Visit&& visit) {
    while (!text.empty()) {
        const bool isRun = belongs(text.front());
        const auto end = std::ranges::find_if(text, [&](char32_t c) { return belongs(c) != isRun; });
        const auto length = static_cast<std::size_t>(end - text.begin());
        visit(text.substr(0, length), isRun);
        text.remove_prefix(length);
    }
}

// The stand-in for a word that comes next, as a counter goes on: az becomes ba, and the last one the first.
PageText following(PageTextView word, PageText standIn) {
    for (std::size_t i = word.size(); i-- > 0;) {
        const PageTextView all = standInsFor(word[i]);
        const std::size_t place = all.find(standIn[i]) + 1;
        standIn[i] = all[place % all.size()];
        if (place != all.size())
            break;
    }
    return standIn;
}

// The beginning of a name that its short name keeps, in whole characters.
PageTextView shortNamePart(PageTextView word) {
    while (sizeOf(word) > kShortNameSize)
        word.remove_suffix(1);
    return word;
}

// In the place of a computer stands its address.
TextPlace placeOf(const NamedPart& part, TextPlace place) {
    return part.kind == PartKind::Computer ? TextPlace::Address : place;
}

}  // namespace

std::set<PageText> wordsOf(PageTextView text) {
    std::set<PageText> words;
    eachRun(text, isWordCharacter, [&](PageTextView run, bool isRun) {
        if (isRun)
            words.insert(lowerCase(run));
    });
    return words;
}

StandIns::StandIns(std::set<PageText> vocabulary) : m_vocabulary(std::move(vocabulary)) {
    const auto addWord = [this](const PageText& word, const PageText& standIn) { addMadeWord(word, standIn); };
    for (const TextForm* form : kTextForms)
        m_forms.emplace(form, form->makeStandIns(m_chance, addWord));
}

PageText StandIns::make(PageTextView word) {
    PageText result;
    for (const char32_t character : word) {
        const PageTextView all = standInsFor(character);
        result += all[m_chance.next(static_cast<unsigned>(all.size()))];
    }
    return result;
}

// Two words never share a stand-in, or two printers would become one. Of one digit there are ten: where the others are
// used up, a word stands for itself.
PageText StandIns::makeFree(const PageText& lowerWord) {
    const auto isFree = [&](const PageText& word) {
        return word != lowerWord && !m_made.contains(word) &&
               (weightOf(word) < kShortestWord || !m_vocabulary.contains(word));
    };
    const PageText first = make(lowerWord);
    PageText made = first;
    while (!isFree(made)) {
        made = following(lowerWord, std::move(made));
        if (made == first) {
            made = lowerWord;
            break;
        }
    }
    m_made.insert(made);
    return made;
}

const PageText& StandIns::standInFor(const PageText& lowerWord) {
    const auto known = m_words.find(lowerWord);
    if (known != m_words.end())
        return known->second.standIn;
    const Word& word = m_words.emplace(lowerWord, Word{makeFree(lowerWord), false}).first->second;
    if (!isNumber(lowerWord) || lowerWord.size() >= kShortestNumber)
        lookFor(lowerWord);
    return word.standIn;
}

void StandIns::lookFor(const PageText& lowerWord) {
    m_words.at(lowerWord).standsAlone = true;
    if (weightOf(lowerWord) < kShortestInside || m_vocabulary.contains(lowerWord))
        return;
    m_inside.add(lowerWord);
    if (sizeOf(lowerWord) <= kShortNameSize)
        return;
    PageText& longest = m_longest[isNumber(lowerWord) ? 1 : 0][PageText(shortNamePart(lowerWord))];
    if (isLonger(lowerWord, longest))
        longest = lowerWord;
}

void StandIns::addMadeWord(const PageText& lowerWord, const PageText& standIn) {
    m_words.insert_or_assign(lowerWord, Word{standIn, true});
    lookFor(lowerWord);
    m_made.insert(standIn);
}

// The digits at its start stay: the module goes by the one in settings such as "1net".
PageText StandIns::replaceOther(PageTextView word) {
    const auto [place, isNew] = m_others.try_emplace(lowerCase(word));
    if (isNew) {
        const PageText& key = place->first;
        const std::size_t kept = isNumber(word) ? 1 : runOf(key, isDigit).size();
        place->second = key.substr(0, kept) + makeFree(key.substr(kept));
    }
    return inCaseOf(word, place->second);
}

void StandIns::addName(std::string_view text) {
    addNames(pageText(text));
}

void StandIns::addNames(PageTextView text) {
    eachRun(text, isNameCharacter, [&](PageTextView run, bool isRun) {
        if (isRun)
            addJoined(run);
    });
}

void StandIns::addJoined(PageTextView joined) {
    while (!joined.empty() && !isWordCharacter(joined.front()))
        joined.remove_prefix(1);
    while (!joined.empty() && !isWordCharacter(joined.back()))
        joined.remove_suffix(1);
    const std::set<PageText> words = wordsOf(joined);
    for (const PageText& word : words)
        standInFor(word);
    if (std::ranges::all_of(joined, isWordCharacter)) {
        if (!joined.empty())
            lookFor(lowerCase(joined));
        return;
    }
    const auto isCommon = [&](const PageText& word) { return m_vocabulary.contains(word); };
    const PageText key = lowerCase(joined);
    if (weightOf(key) >= kShortestJoined && !std::ranges::all_of(words, isCommon))
        m_joined.add(key);
}

void StandIns::learn(std::string_view text, TextPlace place) {
    const PageText characters = pageText(text);
    for (const NamedPart& part : namedPartsOf(characters)) {
        if (part.form != nullptr)
            of(*part.form).learn(bytesOf(part.text), placeOf(part, place));
        else if (part.kind != PartKind::Text)
            addNames(part.text);
    }
}

std::string StandIns::whole(std::string_view text) {
    PageText result;
    eachRun(pageText(text), isWordCharacter, [&](PageTextView run, bool isRun) {
        result += isRun ? inCaseOf(run, standInFor(lowerCase(run))) : PageText(run);
    });
    return bytesOf(result);
}

PageText StandIns::knownWords(PageTextView text) const {
    PageText result;
    eachRun(text, isWordCharacter, [&](PageTextView run, bool isRun) {
        const auto known = isRun ? m_words.find(lowerCase(run)) : m_words.end();
        result += known != m_words.end() ? inCaseOf(run, known->second.standIn) : PageText(run);
    });
    return result;
}

bool StandIns::isUsable(const PageText& secret, TextPlace place) const {
    const auto known = m_words.find(secret);
    return weightOf(secret) >= kShortestWord && !m_vocabulary.contains(secret) && known != m_words.end() &&
           known->second.standsAlone && (place != TextPlace::Version || !isNumber(secret));
}

PageText StandIns::replaceWord(PageTextView word, bool isShortName, TextPlace place) const {
    const PageText key = lowerCase(word);
    if (m_vocabulary.contains(key))
        return PageText(word);
    if (isUsable(key, place))
        return inCaseOf(word, m_words.at(key).standIn);
    const PageText made = isShortName ? shortNameOf(key, place) : PageText();
    return made.empty() ? replaceInside(word, key, place) : inCaseOf(word, made);
}

// The beginning of the stand-in of the longest name that is shortened so; empty where none is.
PageText StandIns::shortNameOf(const PageText& lowerWord, TextPlace place) const {
    PageText longest;
    for (const auto& words : m_longest)
        if (const auto known = words.find(lowerWord);
            known != words.end() && isUsable(known->second, place) && isLonger(known->second, longest))
            longest = known->second;
    return longest.empty() ? longest : m_words.at(longest).standIn.substr(0, lowerWord.size());
}

// The longest first, and those of one length in their order.
PageText StandIns::replaceInside(PageTextView word, const PageText& lowerWord, TextPlace place) const {
    struct Hit {
        const PageText* secret;
        std::size_t place;
    };
    std::vector<Hit> hits;
    for (std::size_t i = 0; i < lowerWord.size(); ++i)
        m_inside.eachOf(PageTextView(lowerWord).substr(i), [&](const PageText& secret) {
            if (isUsable(secret, place))
                hits.push_back({&secret, i});
        });
    std::ranges::stable_sort(hits,
                             [](const Hit& left, const Hit& right) { return isLonger(*left.secret, *right.secret); });
    PageText result(word);
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
std::size_t StandIns::joinedAt(PageTextView text, PageTextView lowerText, std::size_t place) const {
    std::size_t longest = 0;
    m_joined.eachOf(lowerText.substr(place), [&](const PageText& joined) {
        const std::size_t end = place + joined.size();
        if (longest == 0 && (end == text.size() || !isWordCharacter(text[end])))
            longest = joined.size();
    });
    return longest;
}

PageText StandIns::replaceText(PageTextView text, TextPlace place, bool othersToo) {
    PageText result;
    const PageText lowerText = lowerCase(text);
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
        const PageTextView word = runOf(text.substr(i), isWordCharacter);
        PageText made = replaceWord(word, text.substr(i + word.size()).starts_with(U'~'), place);
        if (othersToo && made == word && isTelling(text, word, place))
            made = replaceOther(word);
        result += made;
        i += word.size();
    }
    return result;
}

PageText StandIns::replacePart(const NamedPart& part, TextPlace place, bool othersToo) {
    if (part.form != nullptr)
        return pageText(of(*part.form).standIn(bytesOf(part.text), placeOf(part, place)));
    return part.kind == PartKind::Text ? replaceText(part.text, place, othersToo) : knownWords(part.text);
}

std::string StandIns::replaced(std::string_view text, TextPlace place, bool othersToo) {
    const PageText characters = pageText(text);
    PageText result;
    for (const NamedPart& part : namedPartsOf(characters))
        result += replacePart(part, place, othersToo);
    return bytesOf(result);
}

void StandIns::replaceIn(std::string& data) {
    for (const TextForm* form : kTextForms)
        of(*form).replaceIn(data);
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
