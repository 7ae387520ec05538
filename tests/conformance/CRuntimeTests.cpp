// _strupr, _mbsupr, _mbslwr, _mbscmp.
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

constexpr char kAsciiAlone[] = "Wine changes ASCII letters alone";

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

}  // namespace

void testCRuntime(Suite& suite) {
    testUpperInC(suite);
    if (suite.world.ansiCodePage() != 1252) {
        for (const char* function : {"_mbsupr", "_mbslwr", "_mbscmp"})
            suite.of(function).skip("the ANSI code page is not 1252");
        return;
    }
    testUpper(suite);
    testLower(suite);
    testCompare(suite);
}

}  // namespace conformance
