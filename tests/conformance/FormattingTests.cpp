// Windows' own formatting, and the module's string table.
#include <algorithm>
#include <string>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

using namespace std::string_literals;

constexpr std::size_t kLongest = 1024;  // with the terminator

template <class... Values>
void format(const Check& check, std::string_view expected, const char* text, Values... values) {
    Room room(kLongest);
    const int length = wsprintfA(room.data(), text, values...);
    const std::string at = "\""s + text + "\": ";
    check.text(at + "text", room.text(), expected);
    check.equal(at + "result", length, expected.size());
    check.holds(at + "nothing is written behind it", room.isUntouchedFrom(expected.size() + 1));
}

void testFormats(Suite& suite) {
    const Check check = suite.of("wsprintfA");
    format(check, "", "");
    format(check, "text", "text");
    format(check, "6.0.2900.2180", "%d.%d.%d.%d", 6, 0, 2900, 2180);
    format(check, "65535.65535", "%d.%d", 0xFFFF, 0xFFFF);
    format(check, "-1", "%d", -1);
    format(check, "-2147483648", "%i", static_cast<int>(0x80000000));
    format(check, "4294967295", "%u", 0xFFFFFFFFU);
    format(check, "-1", "%ld", -1L);
    format(check, "4294967295", "%lu", 0xFFFFFFFFUL);
    format(check, "2a", "%x", 42);
    format(check, "2A", "%X", 42);
    format(check, "0x2a", "%#x", 42);
    format(check, "0X2A", "%#X", 42);
    format(check, "C:\\", "%c:\\", 'C');
    format(check, "100%", "%d%%", 100);
    format(check, "[   7]", "[%4d]", 7);
    format(check, "[7   ]", "[%-4d]", 7);
    format(check, "[0007]", "[%04d]", 7);
    format(check, "[-007]", "[%04d]", -7);
    format(check, "[007]", "[%.3d]", 7);
    format(check, "[  007]", "[%5.3d]", 7);
    format(check, "[12345]", "[%3d]", 12345);
    format(check, "[  abc]", "[%5s]", "abc");
    format(check, "[abc  ]", "[%-5s]", "abc");
    format(check, "[ab]", "[%.2s]", "abc");
    format(check, "[   ab]", "[%5.2s]", "abc");
    format(check, "[]", "[%s]", "");
    format(check, "[(null)]", "[%s]", static_cast<const char*>(nullptr));
    format(check, "1099511627776", "%I64d", 1099511627776LL);
    format(check, "-5", "%I64d", -5LL);
    format(check, "18446744073709551615", "%I64u", 0xFFFFFFFFFFFFFFFFULL);
    format(check, "ffffffffff", "%I64x", 0xFFFFFFFFFFULL);
    format(check, "k\xE4se", "%s", "k\xE4se");
    format(check, "a\nb\t", "a\nb\t");
    format(check, "0", "%d", 0);
    format(check, "0", "%x", 0);
    format(check, "", "%");
    format(check, "q", "%q");
    for (const std::size_t length : {std::size_t{1022}, std::size_t{1023}, std::size_t{1024}, std::size_t{3000}}) {
        const std::string text(length, 'a');
        Room room(kLongest);
        const std::size_t kept = std::min<std::size_t>(length, kLongest - 1);
        const std::string at = std::to_string(length) + " letters: ";
        const bool isFull = kept == kLongest - 1;
        const Check result = isFull ? check.exceptUnderWine("Wine counts the terminator of a full buffer") : check;
        result.equal(at + "result", wsprintfA(room.data(), "%s", text.c_str()), kept);
        check.text(at + "text", room.text(), text.substr(0, kept));
        check.holds(at + "no more than 1024 bytes are written", room.isUntouchedFrom(kept + 1));
    }
}

struct Entry {
    UINT id;
    const char* text;
};

constexpr Entry kEntries[] = {
#define KV_STRING(id, text) {id, text},
#include "kvcstat/common/StringTable.inc"
};

void testStrings(Suite& suite) {
    const Check check = suite.of("LoadStringA");
    const HINSTANCE program = GetModuleHandleA(nullptr);
    for (const Entry& entry : kEntries) {
        const std::string_view text = entry.text;
        Room room(256);
        const std::string at = std::to_string(entry.id) + ": ";
        check.equal(at + "result", LoadStringA(program, entry.id, room.data(), 256), text.size());
        check.text(at + "text", room.text(), text);
    }
    const std::string_view text = "unknown";  // 16003
    for (const std::size_t size : {text.size() + 1, text.size(), std::size_t{2}, std::size_t{1}}) {
        Room room(size);
        const std::string at = "room for " + std::to_string(size) + ": ";
        check.equal(at + "result", LoadStringA(program, 16003, room.data(), static_cast<int>(size)), size - 1);
        check.text(at + "text", room.first(size), std::string(text.substr(0, size - 1)) + '\0');
        check.holds(at + "nothing is written behind it", room.isUntouchedBehind());
    }
    Room room(8);
    check.equal("no room: result", LoadStringA(program, 16003, room.data(), 0), -1);
    check.holds("no room: nothing is written", room.isUntouched());
    const auto missing = suite.make([&] { return LoadStringA(program, 15999, room.data(), 8); });
    check.equal("a missing one: result", missing.result, 0);
    check.equal("a missing one: error", missing.error, ERROR_RESOURCE_NAME_NOT_FOUND);
}

}  // namespace

void testFormatting(Suite& suite) {
    testFormats(suite);
    testStrings(suite);
}

}  // namespace conformance
