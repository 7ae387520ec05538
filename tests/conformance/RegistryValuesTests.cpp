// Values of the registry: their types, sizes and ends.
#include "tests/conformance/Arrangement.h"
#include "tests/conformance/RegistryTests.h"

namespace conformance {
namespace {

using namespace std::string_literals;

constexpr DWORD kUntouchedNumber = 0xC0FFEE;

bool isText(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

// What the names of the assertions call a value.
std::string titleOf(const DescribedValue& value) {
    return value.name.empty() ? "the default value" : "\"" + value.name + "\"";
}

struct Answer {
    LSTATUS error;
    DWORD type;
    DWORD size;
};

Answer ask(HKEY key, const char* name, BYTE* data, std::size_t room) {
    Answer answer{0, kUntouchedNumber, static_cast<DWORD>(room)};
    answer.error = RegQueryValueExA(key, name, nullptr, &answer.type, data, &answer.size);
    return answer;
}

void checkQuestion(const Check& check, HKEY key, const DescribedValue& value) {
    const std::string at = titleOf(value) + ", asked for its size: ";
    const Answer answer = ask(key, value.name.c_str(), nullptr, kUntouchedNumber);
    check.equal(at + "result", answer.error, ERROR_SUCCESS);
    check.equal(at + "type", answer.type, value.type);
    check.equal(at + "size", answer.size, value.answer.size());
}

// A text without its terminator gets one where there is room behind it.
void checkRead(const Check& check, HKEY key, const DescribedValue& value, std::size_t room, const char* how) {
    const std::string at = titleOf(value) + how;
    const std::string& expected = value.answer;
    Room data(room);
    const Answer answer = ask(key, value.name.c_str(), data.bytes(), room);
    check.equal(at + "result", answer.error, ERROR_SUCCESS);
    check.equal(at + "type", answer.type, value.type);
    check.equal(at + "size", answer.size, expected.size());
    check.text(at + "data", data.first(expected.size()), expected);
    const bool isOpen = isText(value.type) && !expected.empty() && expected.back() != '\0' && room > expected.size();
    if (isOpen)
        check.text(at + "terminator", std::string_view(data.data() + expected.size(), 1), "\0"s);
    check.holds(at + "nothing is written behind it", data.isUntouchedFrom(expected.size() + (isOpen ? 1 : 0)));
}

void checkShort(const Check& check, HKEY key, const DescribedValue& value, std::size_t room, const char* how) {
    const std::string at = titleOf(value) + how;
    Room data(room);
    const Answer answer = ask(key, value.name.c_str(), data.bytes(), room);
    check.equal(at + "result", answer.error, ERROR_MORE_DATA);
    check.equal(at + "type", answer.type, value.type);
    check.equal(at + "size", answer.size, value.answer.size());
    check.holds(at + "nothing is written behind the room", data.isUntouchedBehind());
}

void checkValue(const Check& check, HKEY key, const DescribedValue& value) {
    const std::size_t size = value.answer.size();
    checkQuestion(check, key, value);
    checkRead(check, key, value, size, ", exactly full: ");
    checkRead(check, key, value, size + 1, ", one byte more: ");
    if (size > 0) {
        checkShort(check, key, value, size - 1, ", one byte short: ");
        checkShort(check, key, value, 0, ", no room: ");
    }
}

void checkArguments(Suite& suite, const Check& check) {
    const Key key(suite.world, "Values");
    BYTE byte = 0x5A;
    DWORD size = kUntouchedNumber;
    DWORD type = kUntouchedNumber;
    const auto query = [](HKEY handle, const char* name, DWORD* t, BYTE* data, DWORD* s) {
        return RegQueryValueExA(handle, name, nullptr, t, data, s);
    };
    check.equal("nothing asked but whether it is there", query(key.get(), "Text", nullptr, nullptr, nullptr),
                ERROR_SUCCESS);
    check.equal("the type alone: result", query(key.get(), "Number", &type, nullptr, nullptr), ERROR_SUCCESS);
    check.equal("the type alone: type", type, REG_DWORD);
    check.equal("the size alone: result", query(key.get(), "Number", nullptr, nullptr, &size), ERROR_SUCCESS);
    check.equal("the size alone: size", size, 4);
    check.equal("data without a size: result", query(key.get(), "Binary of one byte", nullptr, &byte, nullptr),
                ERROR_INVALID_PARAMETER);
    check.equal("data without a size: data", byte, 0x5A);
    check.equal("data without a size, missing: result", query(key.get(), "None", nullptr, &byte, nullptr),
                ERROR_INVALID_PARAMETER);
    DWORD reserved = 0;
    check.equal("something reserved", RegQueryValueExA(key.get(), "Text", &reserved, nullptr, nullptr, nullptr),
                ERROR_INVALID_PARAMETER);

    for (const char* name : {"TEXT", "text", "tExT"})
        check.equal("the name \""s + name + "\"", query(key.get(), name, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    check.equal("a letter of the code page in the other case", query(key.get(), "n\xC4ME", nullptr, nullptr, nullptr),
                ERROR_SUCCESS);
    size = 64;
    Room data(64);
    check.equal("null as name: result", query(key.get(), nullptr, nullptr, data.bytes(), &size), ERROR_SUCCESS);
    check.text("null as name: the default value", data.text(), "default");

    for (const char* name : {"None", "Tex", "Text ", "Values", "\\Text", "Text\\", "\\"}) {
        const std::string at = "the missing name \""s + name + "\": ";
        size = kUntouchedNumber;
        check.equal(at + "result", query(key.get(), name, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
        size = 1;
        check.equal(at + "result with room", query(key.get(), name, nullptr, &byte, &size), ERROR_FILE_NOT_FOUND);
        check.equal(at + "data", byte, 0x5A);
    }
    size = kUntouchedNumber;
    const Key empty(suite.world, "Empty");
    for (const char* name : {"", static_cast<const char*>(nullptr)})
        check.equal("no default value", query(empty.get(), name, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
    check.equal("null as handle", query(nullptr, "Text", nullptr, nullptr, &size), ERROR_INVALID_HANDLE);
    check.equal("a closed handle", query(closedKey(suite.world), "Text", nullptr, nullptr, &size),
                ERROR_INVALID_HANDLE);
    const Key zeroed(suite.world, "Zeroed");
    check.equal("the head of a name with a NUL", query(zeroed.get(), "v", nullptr, nullptr, nullptr),
                ERROR_FILE_NOT_FOUND);
}

void testQueryValue(Suite& suite) {
    const Check check = suite.of("RegQueryValueExA");
    checkArguments(suite, check);
    const Key key(suite.world, "Values");
    for (const DescribedValue& value : describedValues())
        checkValue(check, key.get(), value);
}

struct Enumerated {
    LSTATUS error;
    std::string name;
    DWORD nameSize;
    DWORD type;
    DWORD size;
};

Enumerated enumerate(HKEY key, DWORD index) {
    Room name(512);
    Enumerated found{0, {}, static_cast<DWORD>(name.size()), kUntouchedNumber, kUntouchedNumber};
    found.error = RegEnumValueA(key, index, name.data(), &found.nameSize, nullptr, &found.type, nullptr, &found.size);
    found.name = name.text();
    return found;
}

void checkEnumeration(Suite& suite, const Check& check) {
    const Key sorted(suite.world, "Value sorted");
    const struct {
        std::string name;
        DWORD type;
        DWORD size;
    } expected[] = {
        {"Alpha", REG_SZ, 3}, {"Beta", REG_BINARY, 0}, {"Gamma", REG_DWORD, 4}, {std::string(300, 'v'), REG_BINARY, 4}};
    DWORD index = 0;
    for (const auto& one : expected) {
        const std::string at = "value " + std::to_string(index) + ": ";
        const Enumerated found = enumerate(sorted.get(), index++);
        check.equal(at + "result", found.error, ERROR_SUCCESS);
        check.text(at + "name", found.name, one.name);
        check.equal(at + "length of the name", found.nameSize, one.name.size());
        check.equal(at + "type", found.type, one.type);
        check.equal(at + "size", found.size, one.size);
    }
    const Enumerated end = enumerate(sorted.get(), index);
    check.equal("behind the last value: result", end.error, ERROR_NO_MORE_ITEMS);
    check.equal("behind the last value: length of the name", end.nameSize, 512);
    check.equal("far behind the end: result", enumerate(sorted.get(), 0xFFFFFFFF).error, ERROR_NO_MORE_ITEMS);
    check.equal("a key without values: result", enumerate(Key(suite.world, "Empty").get(), 0).error,
                ERROR_NO_MORE_ITEMS);

    const Key mixed(suite.world, "Value order");
    const Check asMade = check.exceptUnderWine("Wine sorts values by their names");
    asMade.text("the first value made", enumerate(mixed.get(), 0).name, "Zeta");
    check.text("the second value made", enumerate(mixed.get(), 1).name, "alpha");
    asMade.text("the third value made, the default one", enumerate(mixed.get(), 2).name, "");
    asMade.text("the fourth value made", enumerate(mixed.get(), 3).name, "Mid");
}

void checkRooms(Suite& suite, const Check& check) {
    const Key key(suite.world, "Value sorted");
    // "Gamma", a number.
    struct {
        const char* what;
        DWORD nameRoom;
        DWORD dataRoom;
        LSTATUS error;
    } const cases[] = {{"room for all", 6, 4, ERROR_SUCCESS},
                       {"more room than needed", 20, 20, ERROR_SUCCESS},
                       {"a name one byte short", 5, 4, ERROR_MORE_DATA},
                       {"no room for the name", 0, 4, ERROR_MORE_DATA},
                       {"data one byte short", 6, 3, ERROR_MORE_DATA},
                       {"no room for the data", 20, 0, ERROR_MORE_DATA},
                       {"both one byte short", 5, 3, ERROR_MORE_DATA}};
    for (const auto& one : cases) {
        const std::string at = one.what + ": "s;
        Room name(one.nameRoom);
        Room data(one.dataRoom);
        DWORD nameSize = one.nameRoom;
        DWORD dataSize = one.dataRoom;
        DWORD type = kUntouchedNumber;
        check.equal(at + "result",
                    RegEnumValueA(key.get(), 2, name.data(), &nameSize, nullptr, &type, data.bytes(), &dataSize),
                    one.error);
        check.equal(at + "type", type, REG_DWORD);
        check.equal(at + "size of the data", dataSize, 4);
        if (one.error == ERROR_SUCCESS) {
            check.text(at + "name", name.text(), "Gamma");
            check.equal(at + "length of the name", nameSize, 5);
            check.text(at + "data", data.first(4), "\x04\x03\x02\x01");
            check.holds(at + "nothing is written behind the name", name.isUntouchedFrom(6));
            check.holds(at + "nothing is written behind the data", data.isUntouchedFrom(4));
        } else {
            check.equal(at + "room of the name stays", nameSize, one.nameRoom);
            check.holds(at + "nothing is written behind the rooms",
                        name.isUntouchedBehind() && data.isUntouchedBehind());
            // Versions of Windows differ in whether they write the head of a name that does not fit.
            if (one.nameRoom > 5)
                check.holds(at + "no name is written", name.isUntouched());
        }
    }
    // "Alpha", a text without its terminator.
    Room name(20);
    Room data(8);
    DWORD nameSize = 20;
    DWORD dataSize = 8;
    check.equal("an open text: result",
                RegEnumValueA(key.get(), 0, name.data(), &nameSize, nullptr, nullptr, data.bytes(), &dataSize),
                ERROR_SUCCESS);
    check.equal("an open text: size", dataSize, 3);
    check.text("an open text: data", data.first(3), "abc");
    nameSize = 20;
    dataSize = 3;
    check.equal("an open text, exactly full: result",
                RegEnumValueA(key.get(), 0, name.data(), &nameSize, nullptr, nullptr, data.bytes(), &dataSize),
                ERROR_SUCCESS);
    check.equal("an open text, exactly full: size", dataSize, 3);
}

void checkEnumArguments(Suite& suite, const Check& check) {
    const Key key(suite.world, "Value sorted");
    Room name(20);
    DWORD nameSize = 20;
    DWORD dataSize = 4;
    BYTE byte = 0x5A;
    check.equal("no place for the name",
                RegEnumValueA(key.get(), 0, nullptr, &nameSize, nullptr, nullptr, nullptr, nullptr),
                ERROR_INVALID_PARAMETER);
    check.equal("no size of the name",
                RegEnumValueA(key.get(), 0, name.data(), nullptr, nullptr, nullptr, nullptr, nullptr),
                ERROR_INVALID_PARAMETER);
    check.equal("data without a size",
                RegEnumValueA(key.get(), 0, name.data(), &nameSize, nullptr, nullptr, &byte, nullptr),
                ERROR_INVALID_PARAMETER);
    check.equal("something reserved",
                RegEnumValueA(key.get(), 0, name.data(), &nameSize, &dataSize, nullptr, nullptr, nullptr),
                ERROR_INVALID_PARAMETER);
    check.equal("null as handle", RegEnumValueA(nullptr, 0, name.data(), &nameSize, nullptr, nullptr, nullptr, nullptr),
                ERROR_INVALID_HANDLE);
    check.equal("a closed handle",
                RegEnumValueA(closedKey(suite.world), 0, name.data(), &nameSize, nullptr, nullptr, nullptr, nullptr),
                ERROR_INVALID_HANDLE);
    check.holds("none of these writes", name.isUntouched() && byte == 0x5A && nameSize == 20);
    check.equal("the name alone: result",
                RegEnumValueA(key.get(), 0, name.data(), &nameSize, nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    check.text("the name alone: name", name.text(), "Alpha");

    const Key zeroed(suite.world, "Zeroed");
    Room whole(16);
    nameSize = 16;
    check.equal("a name with a NUL: result",
                RegEnumValueA(zeroed.get(), 1, whole.data(), &nameSize, nullptr, nullptr, nullptr, nullptr),
                ERROR_SUCCESS);
    check.equal("a name with a NUL: length", nameSize, 3);
    check.text("a name with a NUL: all of it", whole.first(4), "v\0w\0"s);
}

void testEnumValue(Suite& suite) {
    const Check check = suite.of("RegEnumValueA");
    checkEnumeration(suite, check);
    checkRooms(suite, check);
    checkEnumArguments(suite, check);
}

}  // namespace

void testRegistryValues(Suite& suite) {
    testQueryValue(suite);
    testEnumValue(suite);
}

}  // namespace conformance
