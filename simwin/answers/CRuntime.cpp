#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace {

// A text that is changed in place; every replay begins with the text as it was.
template <class Character>
struct ChangedText {
    Character* text;

    struct Kept : KeptNothingOfIt {
        explicit Kept(const Character* v) : isNull(v == nullptr) {
            if (v != nullptr)
                before = reinterpret_cast<const char*>(v);
        }
        bool isNull;
        std::string before;
        std::string scratch;
        Character* argument(ReplayState&) {
            scratch = before;
            return isNull ? nullptr : reinterpret_cast<Character*>(scratch.data());
        }
    };
    Character* raw() const { return text; }
    Kept keep(Recording&) const { return Kept(text); }
    void input(std::string& log, Machine& machine) const {
        Text{reinterpret_cast<const char*>(text)}.input(log, machine);
    }
    void output(std::string&, Machine&) const {}
};

template <class Character>
Character* change(Character* text, void (*changed)(char*) noexcept) {
    if (text != nullptr)
        changed(reinterpret_cast<char*>(text));
    return text;
}

void upperInC(char* text) noexcept {
    std::transform(text, text + std::strlen(text), text, upperAscii);
}

// A character's number, 0 at the end; half of one at the end is the end.
unsigned takeCharacter(std::string_view& text) {
    const std::size_t length = characterLength(text);
    const bool isHalf = text.size() == 1 && isLeadByte(text[0]);
    unsigned number = 0;
    for (const char byte : text.substr(0, isHalf ? 0 : length))
        number = number << 8 | byteOf(byte);
    text.remove_prefix(length);
    return number;
}

std::string_view viewOf(const unsigned char* text) {
    return reinterpret_cast<const char*>(text);
}

int compare(const unsigned char* left, const unsigned char* right) {
    if (left == nullptr || right == nullptr)
        return std::numeric_limits<int>::max();
    if (!hasDoubleBytes()) {
        const int difference = viewOf(left).compare(viewOf(right));
        return difference < 0 ? -1 : difference > 0 ? 1 : 0;
    }
    for (std::string_view leftRest = viewOf(left), rightRest = viewOf(right);;) {
        const unsigned leftNumber = takeCharacter(leftRest);
        const unsigned rightNumber = takeCharacter(rightRest);
        if (leftNumber != rightNumber)
            return leftNumber < rightNumber ? -1 : 1;
        if (leftNumber == 0)
            return 0;
    }
}

const unsigned char* placeIn(const unsigned char* text, std::size_t place) {
    return place != std::string_view::npos ? text + place : nullptr;
}

// The first place, or the last, that is a character's of one byte or two and that `isWanted`.
template <class Wanted>
std::size_t find(std::string_view text, bool isLast, Wanted isWanted) {
    std::size_t found = std::string_view::npos;
    for (std::size_t i = 0; i < text.size() && (isLast || found == std::string_view::npos);
         i += characterLength(text.substr(i)))
        if (isWanted(text.substr(i)))
            found = i;
    return found;
}

const unsigned char* findCharacterInC(const unsigned char* text, unsigned character, bool isLast) {
    if (text == nullptr || character == 0)
        return text != nullptr ? text + viewOf(text).size() : nullptr;
    if (hasDoubleBytes())
        return placeIn(text, find(viewOf(text), isLast,
                                  [character](std::string_view rest) { return takeCharacter(rest) == character; }));
    const char byte = static_cast<char>(character);
    return placeIn(text, isLast ? viewOf(text).rfind(byte) : viewOf(text).find(byte));
}

// Only the place where the part begins has to be a character's.
const unsigned char* findPart(const unsigned char* text, const unsigned char* part) {
    if (part == nullptr || text == nullptr || *part == '\0')
        return part != nullptr ? text : nullptr;
    if (hasDoubleBytes())
        return placeIn(
            text, find(viewOf(text), false, [part](std::string_view rest) { return rest.starts_with(viewOf(part)); }));
    return placeIn(text, viewOf(text).find(viewOf(part)));
}

// The C runtime's functions take a text that they do not change and give a place in it that can be changed.
unsigned char* changeable(const unsigned char* place) {
    return const_cast<unsigned char*>(place);
}

Text textOf(const unsigned char* text) {
    return Text{reinterpret_cast<const char*>(text)};
}

}  // namespace

char* sim__strupr(char* text) {
    return makeCall<sim__strupr>(
        "_strupr", kNeverFails, [&](Machine&) { return change(text, upperInC); }, ChangedText<char>{text});
}

unsigned char* sim__mbsupr(unsigned char* text) {
    return makeCall<sim__mbsupr>(
        "_mbsupr", kNeverFails, [&](Machine&) { return change(text, makeUpperCase); },
        ChangedText<unsigned char>{text});
}

unsigned char* sim__mbslwr(unsigned char* text) {
    return makeCall<sim__mbslwr>(
        "_mbslwr", kNeverFails, [&](Machine&) { return change(text, makeLowerCase); },
        ChangedText<unsigned char>{text});
}

int sim__mbscmp(const unsigned char* left, const unsigned char* right) {
    return makeCall<[](const char* l, const char* r) {
        return sim__mbscmp(reinterpret_cast<const unsigned char*>(l), reinterpret_cast<const unsigned char*>(r));
    }>(
        "_mbscmp", kNeverFails, [&](Machine&) { return compare(left, right); }, textOf(left), textOf(right));
}

unsigned char* sim__mbschr(const unsigned char* text, unsigned int character) {
    return makeCall<[](const char* t, unsigned int c) {
        return sim__mbschr(reinterpret_cast<const unsigned char*>(t), c);
    }>(
        "_mbschr", kNeverFails, [&](Machine&) { return changeable(findCharacterInC(text, character, false)); },
        textOf(text), Value{character});
}

unsigned char* sim__mbsrchr(const unsigned char* text, unsigned int character) {
    return makeCall<[](const char* t, unsigned int c) {
        return sim__mbsrchr(reinterpret_cast<const unsigned char*>(t), c);
    }>(
        "_mbsrchr", kNeverFails, [&](Machine&) { return changeable(findCharacterInC(text, character, true)); },
        textOf(text), Value{character});
}

unsigned char* sim__mbsstr(const unsigned char* text, const unsigned char* part) {
    return makeCall<[](const char* t, const char* p) {
        return sim__mbsstr(reinterpret_cast<const unsigned char*>(t), reinterpret_cast<const unsigned char*>(p));
    }>(
        "_mbsstr", kNeverFails, [&](Machine&) { return changeable(findPart(text, part)); }, textOf(text), textOf(part));
}
