// The C runtime's functions for texts of the ANSI code page.
#include <cstddef>
#include <span>
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

constexpr char kAsciiAlone[] = "Wine changes ASCII letters alone of those with one byte";
constexpr char kHalfIsWhole[] = "Wine takes half a character for one";
constexpr char kLooksAtBytes[] = "Wine looks at bytes, not at characters";

unsigned char* bytes(char* text) {
    return reinterpret_cast<unsigned char*>(text);
}

const unsigned char* bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

template <class Change>
void checkChange(const Check& check, Change change, const char* what, std::string_view before,
                 std::string_view expected) {
    std::string text(before);
    const char* place = text.data();
    const void* result = change(text.data());
    check.holds(what + ": gives the text itself"s, result == place);
    check.text(what + ": text"s, text, expected);
}

void testUpperInC(Suite& suite) {
    const Check check = suite.of("_strupr");
    const auto change = [](char* text) { return _strupr(text); };
    checkChange(check, change, "letters", "aBc xyz", "ABC XYZ");
    checkChange(check, change, "no letters", "@[`{09_", "@[`{09_");
    checkChange(check, change, "nothing", "", "");
    checkChange(check, change, "letters of the code page", "\xE4\x9C\xFF", "\xE4\x9C\xFF");
    checkChange(check, change, "a text that ends", "ab\0cd"s, "AB\0cd"s);
}

void testUpper(Suite& suite) {
    const Check check = suite.of("_mbsupr");
    const auto change = [](char* text) { return _mbsupr(bytes(text)); };
    checkChange(check, change, "letters", "aBc xyz", "ABC XYZ");
    checkChange(check, change, "no letters", "@[`{09_", "@[`{09_");
    checkChange(check, change, "nothing", "", "");
    checkChange(check, change, "a text that ends", "ab\0cd"s, "AB\0cd"s);
    checkChange(check, change, "letters without another case", "\xDF\xF7\xD7\xAA", "\xDF\xF7\xD7\xAA");
    checkChange(check, change, "upper letters of the code page", "\xC4\x8C\x9F", "\xC4\x8C\x9F");
    for (const auto& [lower, upper] : {std::pair("\xE4", "\xC4"),
                                       {"\xE0", "\xC0"},
                                       {"\xFE", "\xDE"},
                                       {"\x9A", "\x8A"},
                                       {"\x9C", "\x8C"},
                                       {"\x9E", "\x8E"},
                                       {"\xFF", "\x9F"}}) {
        std::string text = lower;
        _mbsupr(bytes(text.data()));
        check.exceptUnderWine(kAsciiAlone).text("a letter of the code page", text, upper);
    }
}

void testLower(Suite& suite) {
    const Check check = suite.of("_mbslwr");
    const auto change = [](char* text) { return _mbslwr(bytes(text)); };
    checkChange(check, change, "letters", "aBc XYZ", "abc xyz");
    checkChange(check, change, "no letters", "@[`{09_", "@[`{09_");
    checkChange(check, change, "nothing", "", "");
    checkChange(check, change, "a text that ends", "AB\0CD"s, "ab\0CD"s);
    checkChange(check, change, "letters without another case", "\xDF\xF7\xD7\xAA", "\xDF\xF7\xD7\xAA");
    checkChange(check, change, "lower letters of the code page", "\xE4\x9C\xFF", "\xE4\x9C\xFF");
    for (const auto& [upper, lower] : {std::pair("\xC4", "\xE4"),
                                       {"\xC0", "\xE0"},
                                       {"\xDE", "\xFE"},
                                       {"\x8A", "\x9A"},
                                       {"\x8C", "\x9C"},
                                       {"\x8E", "\x9E"},
                                       {"\x9F", "\xFF"}}) {
        std::string text = upper;
        _mbslwr(bytes(text.data()));
        check.exceptUnderWine(kAsciiAlone).text("a letter of the code page", text, lower);
    }
}

int signOf(int number) {
    return number < 0 ? -1 : number > 0 ? 1 : 0;
}

void testCompare(Suite& suite) {
    const Check check = suite.of("_mbscmp");
    const struct {
        const char* what;
        const char* left;
        const char* right;
        int sign;
    } cases[] = {{"the same", "Terminal Server", "Terminal Server", 0},
                 {"nothing and nothing", "", "", 0},
                 {"another letter case", "A", "a", -1},
                 {"another letter case, the other way", "a", "A", 1},
                 {"the head of the other", "ab", "abc", -1},
                 {"longer than the other", "abc", "ab", 1},
                 {"nothing and something", "", "a", -1},
                 {"something and nothing", "a", "", 1},
                 {"a letter of the code page is behind the others", "\xE4", "z", 1},
                 {"letters of the code page", "\xC4", "\xE4", -1},
                 {"a later letter", "aaz", "aab", 1}};
    for (const auto& one : cases)
        check.equal(one.what, signOf(_mbscmp(bytes(one.left), bytes(one.right))), one.sign);
}

// Where something was found, counted from the text's begin; -1: nowhere.
std::ptrdiff_t placeIn(const char* text, const unsigned char* found) {
    return found != nullptr ? found - bytes(text) : -1;
}

struct CharacterCase {
    const char* what;
    const char* text;
    unsigned character;
    std::ptrdiff_t first;
    std::ptrdiff_t last;
};

void checkCharacters(Suite& suite, std::span<const CharacterCase> cases) {
    const Check first = suite.of("_mbschr");
    const Check last = suite.of("_mbsrchr");
    for (const CharacterCase& one : cases) {
        first.equal(one.what, placeIn(one.text, _mbschr(bytes(one.text), one.character)), one.first);
        last.equal(one.what, placeIn(one.text, _mbsrchr(bytes(one.text), one.character)), one.last);
    }
}

void testCharacters(Suite& suite) {
    const CharacterCase cases[] = {{"a character of several", "a;b;c", ';', 1, 3},
                                   {"the first", ";ab", ';', 0, 0},
                                   {"one that is not there", "abc", ';', -1, -1},
                                   {"in another letter case", "abc", 'B', -1, -1},
                                   {"in nothing", "", ';', -1, -1},
                                   {"the end", "abc", 0, 3, 3},
                                   {"a letter of the code page", "a\xE4\xE4", 0xE4, 1, 2}};
    checkCharacters(suite, cases);
}

struct PartCase {
    const char* what;
    const char* text;
    const char* part;
    std::ptrdiff_t place;
};

void testParts(Suite& suite) {
    const Check check = suite.of("_mbsstr");
    const PartCase cases[] = {{"a part", "Internet Explorer", "Explorer", 9},
                              {"the first of several", "a;b;c", ";", 1},
                              {"the text itself", "abc", "abc", 0},
                              {"more than the text", "abc", "abcd", -1},
                              {"a part that begins twice", "aab", "ab", 1},
                              {"in another letter case", "abc", "B", -1},
                              {"nothing", "abc", "", 0},
                              {"nothing in nothing", "", "", 0},
                              {"something in nothing", "", "a", -1},
                              {"letters of the code page", "a\xC4\xE4", "\xE4", 2}};
    for (const PartCase& one : cases)
        check.equal(one.what, placeIn(one.text, _mbsstr(bytes(one.text), bytes(one.part))), one.place);
}

// Characters of two bytes, whose second one can be a backslash, a bracket, a bar or a letter.
void testJapanese(Suite& suite) {
    const CharacterCase characters[] = {{"behind a second byte of its number", "\x83\x5C\\a", '\\', 2, 2},
                                        {"as a second byte alone", "C:\x83\x5C", '\\', -1, -1},
                                        {"before a second byte of its number", "C:\\\x83\x5C", '\\', 2, 2},
                                        {"of two bytes", "a\x83\x5C\x83\x5C", 0x835C, 1, 3},
                                        {"a lead byte alone", "\x83\x5C\x83", 0x83, -1, -1},
                                        {"half-width kana", "a\xB1\xB1", 0xB1, 1, 2}};
    checkCharacters(suite, characters);
    const Check part = suite.of("_mbsstr");
    const char* text =
        "\x83\x5C"
        "b\\b";
    part.exceptUnderWine(kLooksAtBytes)
        .equal("a part that is a second byte and more", placeIn(text, _mbsstr(bytes(text), bytes("\\b"))), 3);
    part.equal("a part of two bytes", placeIn(text, _mbsstr(bytes(text), bytes("\x83\x5C"))), 0);

    const Check upper = suite.of("_mbsupr");
    const auto makeUpper = [](char* changed) { return _mbsupr(bytes(changed)); };
    checkChange(upper, makeUpper, "second bytes that are letters", "a\x83\x61z", "A\x83\x61Z");
    checkChange(upper, makeUpper, "half-width kana", "\xB1\xDF", "\xB1\xDF");
    checkChange(upper, makeUpper, "half a character at the end", "a\x83", "A\x83");
    const Check lower = suite.of("_mbslwr");
    const auto makeLower = [](char* changed) { return _mbslwr(bytes(changed)); };
    checkChange(lower, makeLower, "second bytes that are letters", "A\x83\x41Z", "a\x83\x41z");
    for (const auto& [small, capital] : {std::pair("\x82\x81", "\x82\x60"), {"\x84\x70", "\x84\x40"}}) {
        std::string changed = small;
        _mbsupr(bytes(changed.data()));
        upper.text("a letter of two bytes", changed, capital);
        changed = capital;
        _mbslwr(bytes(changed.data()));
        lower.text("a letter of two bytes", changed, small);
    }

    const Check compare = suite.of("_mbscmp");
    compare.equal("the same", _mbscmp(bytes("\x83\x5C"), bytes("\x83\x5C")), 0);
    compare.equal("two bytes are behind one", signOf(_mbscmp(bytes("\x83\x41"), bytes("\xB1"))), 1);
    compare.equal("another second byte", signOf(_mbscmp(bytes("\x83\x41"), bytes("\x83\x42"))), -1);
    compare.exceptUnderWine(kHalfIsWhole)
        .equal("half a character at the end is the end", _mbscmp(bytes("a\x83"), bytes("a")), 0);
}

}  // namespace

void testCRuntime(Suite& suite) {
    testUpperInC(suite);
    switch (suite.world.ansiCodePage()) {
        case 1252:
            testUpper(suite);
            testLower(suite);
            testCompare(suite);
            testCharacters(suite);
            testParts(suite);
            break;
        case 932:
            testJapanese(suite);
            break;
        default:
            for (const char* function : {"_mbsupr", "_mbslwr", "_mbscmp", "_mbschr", "_mbsrchr", "_mbsstr"})
                suite.of(function).skip("the ANSI code page is neither 1252 nor 932");
    }
}

}  // namespace conformance
