// UTF-16 to texts of the ANSI code page.
#include <algorithm>
#include <span>
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

const WCHAR* wideUnits(std::u16string_view text) {
    return reinterpret_cast<const WCHAR*>(text.data());
}

struct TextCase {
    const char* what;
    std::u16string_view text;
    std::string narrow;
    BOOL usedReplacement;
};

// Every text ends with its terminator, so that it can be asked for by its length and without.
const TextCase kWesternTexts[] = {
    {"letters", u"Intel\0"sv, "Intel\0"s, FALSE},
    {"an empty text", u"\0"sv, "\0"s, FALSE},
    {"letters of the code page", u"\u00E4\u00D6\u00DF\0"sv, "\xE4\xD6\xDF\0"s, FALSE},
    {"the upper controls' characters", u"\u20AC\u0160\u0178\u2122\0"sv, "\x80\x8A\x9F\x99\0"s, FALSE},
    {"the controls that stay", u"\u0081\u008D\u0090\0"sv, "\x81\x8D\x90\0"s, FALSE},
    {"letters with a like one", u"\u0141\u0101\u010D\0"sv, "Lac\0"s, FALSE},
    {"wide forms of letters", u"\uFF21\uFF42\0"sv, "Ab\0"s, FALSE},
    {"characters beyond", u"a\u4E2Db\0"sv, "a?b\0"s, TRUE},
    {"a pair of surrogates", u"\xD83D\xDE00\0"sv, "??\0"s, TRUE},
    {"half a pair", u"\xD83Dx\0"sv, "?x\0"s, TRUE},
    {"a true question mark", u"?\0"sv, "?\0"s, FALSE},
};

const TextCase kJapaneseTexts[] = {
    {"letters", u"Intel\0"sv, "Intel\0"s, FALSE},
    {"characters of two bytes", u"\u5C71\u30BD\0"sv, "\x8E\x52\x83\x5C\0"s, FALSE},
    {"half-width kana", u"\uFF71\uFF9F\0"sv, "\xB1\xDF\0"s, FALSE},
    {"a character that has two codes", u"\u222A\u3231\0"sv, "\x81\xBE\x87\x8A\0"s, FALSE},
    {"letters with a like one", u"\u00C0\u00E9\0"sv, "Ae\0"s, FALSE},
    {"characters beyond", u"a\u0141\uD55Cb\0"sv, "a??b\0"s, TRUE},
    {"a pair of surrogates", u"\xD83D\xDE00\0"sv, "??\0"s, TRUE},
};

void checkText(Suite& suite, const Check& check, const TextCase& one, UINT codePage) {
    const std::string at = one.what + (codePage == CP_ACP ? ""s : ", by the number of the code page"s);
    const auto size = static_cast<int>(one.narrow.size());
    const auto length = static_cast<int>(one.text.size());
    const auto convert = [&](int units, char* buffer, int room, const char* replacement, BOOL* used) {
        return WideCharToMultiByte(codePage, 0, wideUnits(one.text), units, buffer, room, replacement, used);
    };
    check.equal(at + ", asked for its size", convert(-1, nullptr, 0, nullptr, nullptr), size);
    check.equal(at + ", asked for its size by length", convert(length - 1, nullptr, 0, nullptr, nullptr),
                size > 1 ? size - 1 : 0);
    Room exact(static_cast<std::size_t>(size));
    BOOL used = 7;
    check.equal(at + ", exactly full: result", convert(-1, exact.data(), size, nullptr, &used), size);
    check.text(at + ", exactly full: text", exact.first(exact.size()), one.narrow);
    check.equal(at + ", exactly full: replaced", used, one.usedReplacement);
    check.holds(at + ", exactly full: nothing behind", exact.isUntouchedBehind());
    if (size > 1) {
        Room open(static_cast<std::size_t>(size));
        check.equal(at + ", without its terminator: result", convert(length - 1, open.data(), size, nullptr, nullptr),
                    size - 1);
        check.holds(at + ", without its terminator: none is written", open.isUntouchedFrom(open.size() - 1));
        Room tight(static_cast<std::size_t>(size - 1));
        const auto made = suite.make([&] { return convert(-1, tight.data(), size - 1, nullptr, nullptr); });
        check.equal(at + ", one byte short: result", made.result, 0);
        check.equal(at + ", one byte short: error", made.error, ERROR_INSUFFICIENT_BUFFER);
        check.holds(at + ", one byte short: nothing behind", tight.isUntouchedBehind());
    }
    if (one.usedReplacement != FALSE) {
        std::string expected = one.narrow;
        std::replace(expected.begin(), expected.end(), '?', '_');
        Room replaced(static_cast<std::size_t>(size));
        check.equal(at + ", with another replacement: result", convert(-1, replaced.data(), size, "_", &used), size);
        check.text(at + ", with another replacement: text", replaced.first(replaced.size()), expected);
        check.equal(at + ", with another replacement: replaced", used, TRUE);
    }
}

void checkRefusals(Suite& suite, const Check& check) {
    Room buffer(8);
    const auto refuses = [&](const char* what, UINT codePage, const WCHAR* text, int length, char* place, int size,
                             DWORD error) {
        const auto made =
            suite.make([&] { return WideCharToMultiByte(codePage, 0, text, length, place, size, nullptr, nullptr); });
        check.equal(what + ": result"s, made.result, 0);
        check.equal(what + ": error"s, made.error, error);
    };
    const WCHAR* text = wideUnits(u"ATI");
    refuses("no text", CP_ACP, nullptr, -1, buffer.data(), 8, ERROR_INVALID_PARAMETER);
    refuses("no characters", CP_ACP, text, 0, buffer.data(), 8, ERROR_INVALID_PARAMETER);
    refuses("no buffer, but room", CP_ACP, text, -1, nullptr, 8, ERROR_INVALID_PARAMETER);
    refuses("room below zero", CP_ACP, text, -1, buffer.data(), -1, ERROR_INVALID_PARAMETER);
    refuses("an unknown code page", 60000, text, -1, buffer.data(), 8, ERROR_INVALID_PARAMETER);
    refuses("no room for one character", CP_ACP, text, -1, buffer.data(), 1, ERROR_INSUFFICIENT_BUFFER);
    check.holds("none of these writes behind the room", buffer.isUntouchedFrom(1));
    check.equal("a length below -1 is an unknown one",
                WideCharToMultiByte(CP_ACP, 0, text, -5, nullptr, 0, nullptr, nullptr), 4);
    check.equal("a buffer without room is a question",
                WideCharToMultiByte(CP_ACP, 0, text, -1, buffer.data(), 0, nullptr, nullptr), 4);
    const auto made =
        suite.make([&] { return WideCharToMultiByte(CP_ACP, 0, text, -1, buffer.data(), 8, nullptr, nullptr); });
    check.equal("success: the last error stays", made.error, kUntouchedError);
}

}  // namespace

void testWideText(Suite& suite) {
    const Check check = suite.of("WideCharToMultiByte");
    const UINT own = suite.world.ansiCodePage();
    if (own != 1252 && own != 932) {
        check.skip("the ANSI code page is neither 1252 nor 932");
        return;
    }
    const auto japanese = std::span<const TextCase>(kJapaneseTexts);
    for (const TextCase& one : own == 932 ? japanese : std::span<const TextCase>(kWesternTexts))
        for (const UINT codePage : {UINT{CP_ACP}, own})
            checkText(suite, check, one, codePage);
    checkRefusals(suite, check);
}

}  // namespace conformance
