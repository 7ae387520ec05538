#include "tests/conformance/Arrangement.h"

#include <string_view>

namespace conformance {
namespace {

using namespace std::string_literals;

// Numbers of Windows' value types.
enum Type : std::uint32_t {
    None = 0,
    Text = 1,
    Expand = 2,
    Binary = 3,
    Number = 4,
    BigEndian = 5,
    List = 7,
    Resources = 8,
    Long = 11,
    Unknown = 0x1234,
};

std::string wide(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(unit)));
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(unit >> 8)));
    }
    return bytes;
}

DescribedValue textOf(const char* name, std::u16string_view text, std::string answer, std::uint32_t type = Text) {
    return {name, type, wide(text), std::move(answer)};
}

DescribedValue bytesOf(const char* name, std::uint32_t type, const std::string& bytes) {
    return {name, type, bytes, bytes};
}

std::vector<DescribedValue> makeValues() {
    using namespace std::string_view_literals;
    return {
        textOf("", u"default\0"sv, "default\0"s),
        textOf("Text", u"abc\0"sv, "abc\0"s),
        textOf("Text without terminator", u"abc"sv, "abc"),
        textOf("Text with two terminators", u"abc\0\0"sv, "abc\0\0"s),
        textOf("Text with a NUL inside", u"a\0bc\0"sv, "a\0bc\0"s),
        textOf("Text of a terminator alone", u"\0"sv, "\0"s),
        textOf("Text of no bytes", u""sv, ""),
        textOf("Letter", u"A\0"sv, "A\0"s),
        textOf("Letter without terminator", u"A"sv, "A"),
        {"Text and half a character", Text, wide(u"abc") + "x", "abc"},
        {"Half a character", Text, "x", ""},
        {"Letter and half a character", Text, wide(u"A") + "x", "A"},
        textOf("Letters of the code page", u"\u00E4\u00D6\u00DF\u20AC\u0160\u0178\0"sv, "\xE4\xD6\xDF\x80\x8A\x9F\0"s),
        textOf("Controls that the code page keeps", u"\u0081\u008D\u008F\u0090\u009D\0"sv, "\x81\x8D\x8F\x90\x9D\0"s),
        textOf("Characters beyond the code page", u"\u4E2D\u6587\0"sv, "??\0"s),
        textOf("Letters with a like one", u"\u0141\u0101\u010D\uFF21\0"sv, "LacA\0"s),
        textOf("Surrogates", u"\xD83D\xDE00\0"sv, "??\0"s),
        textOf("Half a pair of surrogates", u"\xDE00x\0"sv, "?x\0"s),
        textOf("Expandable", u"%windir%\0"sv, "%windir%\0"s, Expand),
        textOf("Expandable without terminator", u"%windir%"sv, "%windir%", Expand),
        textOf("List", u"a\0bc\0\0"sv, "a\0bc\0\0"s, List),
        textOf("List without its empty item", u"a\0bc\0"sv, "a\0bc\0"s, List),
        textOf("List without terminator", u"a\0bc"sv, "a\0bc"s, List),
        textOf("List of no item", u"\0"sv, "\0"s, List),
        textOf("List of no bytes", u""sv, "", List),
        {"List and half a character", List, wide(u"a\0b\0"sv) + "x", "a\0b\0"s},
        bytesOf("Number", Number, "\x04\x03\x02\x01"),
        bytesOf("Number of two bytes", Number, "\x04\x03"),
        bytesOf("Number of six bytes", Number, "\x06\x05\x04\x03\x02\x01"),
        bytesOf("Number of no bytes", Number, ""),
        bytesOf("Number the other way", BigEndian, "\x01\x02\x03\x04"),
        bytesOf("Long number", Long, "\x08\x07\x06\x05\x04\x03\x02\x01"),
        bytesOf("Binary", Binary, "\x01\0\x02\0\xFF"s),
        bytesOf("Binary of no bytes", Binary, ""),
        bytesOf("Binary of one byte", Binary, "A"),
        bytesOf("Binary that reads as text", Binary, "abc\0"s),
        bytesOf("Binary of wide text", Binary, wide(u"ATI\0"sv)),
        bytesOf("Resources", Resources, "abc"),
        bytesOf("Without type", None, "abc"),
        bytesOf("Without type and bytes", None, ""),
        bytesOf("Of an unknown type", Unknown, "xyz"),
        bytesOf("Large", Binary, std::string(70000, 'B')),
        textOf("Long text", std::u16string(3000, u'T') + u'\0', std::string(3000, 'T') + '\0'),
        textOf("N\xE4me", u"x\0"sv, "x\0"s),
    };
}

std::vector<DescribedKey> makeKeys() {
    using namespace std::string_view_literals;
    return {
        {"Keys", {textOf("Value", u"x\0"sv, "x\0"s)}},
        {"Keys\\Alpha", {}},
        {"Keys\\Beta", {textOf("", u"beta\0"sv, "beta\0"s)}},
        {"Keys\\Gamma\\Deep", {}},
        {"Keys\\K\xE4se", {}},
        {"Keys\\{4D36E968-E325-11CE-BFC1-08002BE10318}", {}},
        {"Keys\\" + std::string(255, 'n'), {}},
        {"Blank name", {}},
        {"Blank name\\ a b ", {}},
        {"Dotted\\.html", {}},
        {"Zeroed", {textOf("", u"x\0"sv, "x\0"s), {"v\0w"s, Text, wide(u"y\0"sv), "y\0"s}}},
        {"Zeroed\\a\0b"s, {}},
        {"Sorted\\Aardvark", {}},
        {"Sorted\\bee", {}},
        {"Sorted\\Cat", {}},
        {"Mixed\\zebra", {}},
        {"Mixed\\Aardvark", {}},
        {"Mixed\\m_x", {}},
        {"Mixed\\mAx", {}},
        {"Value order",
         {textOf("Zeta", u"one\0"sv, "one\0"s), textOf("alpha", u"two\0"sv, "two\0"s),
          textOf("", u"three\0"sv, "three\0"s), bytesOf("Mid", Number, "\x04\x03\x02\x01")}},
        {"Value sorted",
         {textOf("Alpha", u"abc"sv, "abc"), bytesOf("Beta", Binary, ""), bytesOf("Gamma", Number, "\x04\x03\x02\x01"),
          bytesOf(std::string(300, 'v').c_str(), Binary, "long")}},
        {"Values", describedValues()},
        {"Empty", {}},
    };
}

}  // namespace

const std::vector<DescribedValue>& describedValues() {
    static const std::vector<DescribedValue> values = makeValues();
    return values;
}

const std::vector<DescribedKey>& describedKeys() {
    static const std::vector<DescribedKey> keys = makeKeys();
    return keys;
}

const std::vector<DescribedFile>& describedFiles() {
    static const std::vector<DescribedFile> files = {
        {"plain.txt"},
        {"Folder with blanks\\Long Name of a File.text"},
        {"Folder with blanks\\Inner\\deep.txt"},
        {"k\xE4se.txt"},
        {"two.dots.txt"},
        {"Program.exe", true, {}},
        {"no program.dll"},
    };
    return files;
}

const std::vector<DescribedVariable>& describedVariables() {
    static const std::vector<DescribedVariable> variables = {
        {"KVCONFORM_TEXT", "some text"},
        {"KVCONFORM_LETTER", "x"},
        {"KVCONFORM_HIGH", "k\xE4se \x80"},
        {"KVCONFORM_EQUALS", "a=b"},
        {"KVCONFORM_LONG", std::string(5000, 'v')},
    };
    return variables;
}

const std::vector<DescribedEntry>& describedEntries() {
    static const std::vector<DescribedEntry> entries = {
        {"device", "HP LaserJet,winspool,LPT1:"},
        {"quoted", "\" two blanks  \""},
        {"single", "'one'"},
        {"half", "\"half"},
        {"uneven", "\"uneven'"},
        {"inner", "a \"b\" c"},
        {"blanks", "  between blanks  "},
        {"nothing", ""},
        {"device", "a second one"},
        {"equals", "a=b"},
        {"quotes alone", "\"\""},
        {"one quote", "\""},
        {"high", "k\xE4se"},
    };
    return entries;
}

}  // namespace conformance
