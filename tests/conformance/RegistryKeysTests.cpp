// Keys of the registry: how paths lead to them, and their order.
#include "tests/conformance/RegistryTests.h"

namespace conformance {
namespace {

using namespace std::string_literals;

using Open = LSTATUS (*)(HKEY key, const char* path, HKEY* result);

LSTATUS openPlainly(HKEY key, const char* path, HKEY* result) {
    return RegOpenKeyA(key, path, result);
}

LSTATUS openForReading(HKEY key, const char* path, HKEY* result) {
    return RegOpenKeyExA(key, path, 0, KEY_READ, result);
}

struct PathCase {
    const char* what;
    const char* path;  // below the suite's own key
    LSTATUS error;
};

// What Windows takes for a path to a key.
constexpr PathCase kPaths[] = {
    {"a key", "Keys", ERROR_SUCCESS},
    {"a key below it", "Keys\\Alpha", ERROR_SUCCESS},
    {"a key two levels below", "Keys\\Gamma\\Deep", ERROR_SUCCESS},
    {"upper case", "KEYS\\GAMMA\\DEEP", ERROR_SUCCESS},
    {"lower case", "keys\\gamma\\deep", ERROR_SUCCESS},
    {"a letter of the code page", "Keys\\K\xE4se", ERROR_SUCCESS},
    {"a letter of the code page in the other case", "Keys\\k\xC4SE", ERROR_SUCCESS},
    {"a class identifier", "keys\\{4d36e968-e325-11ce-bfc1-08002be10318}", ERROR_SUCCESS},
    {"a name with blanks at its ends", "Blank name\\ a b ", ERROR_SUCCESS},
    {"a name with a dot in front", "Dotted\\.html", ERROR_SUCCESS},
    {"a key without anything", "Empty", ERROR_SUCCESS},
    {"a backslash at the end", "Keys\\", ERROR_SUCCESS},
    {"a backslash at the end of a longer path", "Keys\\Gamma\\Deep\\", ERROR_SUCCESS},
    {"two backslashes at the end", "Keys\\\\", ERROR_SUCCESS},
    {"a missing key", "None", ERROR_FILE_NOT_FOUND},
    {"a missing key below a key", "Keys\\None", ERROR_FILE_NOT_FOUND},
    {"a key below a missing one", "None\\Keys", ERROR_FILE_NOT_FOUND},
    {"a missing key and a backslash at the end", "Keys\\None\\", ERROR_FILE_NOT_FOUND},
    {"the name of a value", "Keys\\Value", ERROR_FILE_NOT_FOUND},
    {"the head of a name", "Keys\\Alph", ERROR_FILE_NOT_FOUND},
    {"a longer name", "Keys\\Alphabet", ERROR_FILE_NOT_FOUND},
    {"a name without its blanks", "Blank name\\a b", ERROR_FILE_NOT_FOUND},
    {"a blank", " ", ERROR_FILE_NOT_FOUND},
    {"a backslash doubled inside", "Keys\\\\Alpha", ERROR_SUCCESS},
    {"three backslashes inside", "Keys\\\\\\Gamma\\Deep", ERROR_SUCCESS},
    {"a backslash doubled in front of a missing key", "Keys\\\\None", ERROR_FILE_NOT_FOUND},
    {"a slash in place of a backslash", "Keys/Alpha", ERROR_FILE_NOT_FOUND},
    {"a backslash in front", "\\Keys", ERROR_BAD_PATHNAME},
    {"a backslash in front of a missing key", "\\None", ERROR_BAD_PATHNAME},
    {"two backslashes in front", "\\\\Keys", ERROR_BAD_PATHNAME},
    {"a backslash alone", "\\", ERROR_BAD_PATHNAME},
    {"two backslashes alone", "\\\\", ERROR_BAD_PATHNAME},
    {"a dot", ".", ERROR_FILE_NOT_FOUND},
    {"two dots", "Keys\\..", ERROR_FILE_NOT_FOUND},
    {"the head of a name with a NUL", "Zeroed\\a", ERROR_FILE_NOT_FOUND},
};

void checkPaths(Suite& suite, const Check& check, Open open) {
    const Key own(suite.world, "");
    for (const PathCase& one : kPaths) {
        HKEY key = nullptr;
        const LSTATUS error = open(own.get(), one.path, &key);
        check.equal(one.what + ": result"s, error, one.error);
        check.equal(one.what + ": a key is given"s, key != nullptr, one.error == ERROR_SUCCESS);
        if (error == ERROR_SUCCESS && key != nullptr)
            check.equal(one.what + ": it closes"s, RegCloseKey(key), ERROR_SUCCESS);
    }
}

void checkWholePaths(Suite& suite, const Check& check, Open open) {
    HKEY key = nullptr;
    check.equal("from the hive: result", open(HKEY_CURRENT_USER, suite.world.key("Keys\\Alpha").c_str(), &key),
                ERROR_SUCCESS);
    RegCloseKey(key);
    check.equal("from the hive, missing: result", open(HKEY_CURRENT_USER, suite.world.key("None").c_str(), &key),
                ERROR_FILE_NOT_FOUND);
    check.equal("from the hive, a backslash in front: result",
                open(HKEY_CURRENT_USER, ("\\" + suite.world.key()).c_str(), &key), ERROR_BAD_PATHNAME);
    check.equal("from another hive: result", open(HKEY_USERS, suite.world.key().c_str(), &key), ERROR_FILE_NOT_FOUND);
    check.equal("missing classes: result", open(HKEY_CLASSES_ROOT, "kvconform none", &key), ERROR_FILE_NOT_FOUND);
    check.equal("missing classes, a backslash in front: result", open(HKEY_CLASSES_ROOT, "\\kvconform none", &key),
                ERROR_FILE_NOT_FOUND);
}

// A path of more than 260 characters, whose names are each short enough.
void checkLongPath(Suite& suite, const Check& check, Open open) {
    HKEY key = nullptr;
    const std::string path = "Keys\\" + std::string(255, 'n');
    const Key own(suite.world, "");
    const Check marked = check.exceptUnderWine("Wine's narrow calls take no path of more than 260 characters");
    marked.equal("a path of 261 characters and more: result",
                 open(HKEY_CURRENT_USER, suite.world.key(path).c_str(), &key), ERROR_SUCCESS);
    if (key != nullptr)
        RegCloseKey(key);
    check.equal("a path of 260 characters: result", open(own.get(), path.c_str(), &key), ERROR_SUCCESS);
    RegCloseKey(key);
}

void checkHandles(Suite& suite, const Check& check, Open open) {
    HKEY key = nullptr;
    if (open == openForReading && suite.world.platform() == Platform::Wine)
        check.skip("no place for the key: Wine writes to it all the same and crashes");
    else
        check.equal("no place for the key: result", open(HKEY_CURRENT_USER, "Software", nullptr),
                    ERROR_INVALID_PARAMETER);
    check.equal("null as handle: result", open(nullptr, "Software", &key), ERROR_INVALID_HANDLE);
    const HKEY closed = closedKey(suite.world);
    check.equal("a closed handle: result", open(closed, "Keys", &key), ERROR_INVALID_HANDLE);
    check.equal("a closed handle and a missing key: result", open(closed, "None", &key), ERROR_INVALID_HANDLE);
    check.holds("nothing is given", key == nullptr);
    key = closed;
    open(HKEY_CURRENT_USER, "kvconform none", &key);
    check.holds("a missing key: the place becomes null", key == nullptr);
    key = closed;
    open(HKEY_CURRENT_USER, "\\Software", &key);
    check.holds("a backslash in front: the place becomes null", key == nullptr);
    key = HKEY_CURRENT_USER;
    open(closed, "Keys", &key);
    check.holds("a closed handle: the place becomes null", key == nullptr);
    key = closed;
    open(nullptr, "Software", &key);
    check.holds("null as handle: the place stays", key == closed);
    // Of a hive's handle the lower half counts.
    for (const ULONG_PTR upper : {ULONG_PTR{0}, ULONG_PTR{1}, ULONG_PTR{0xDEADBEEF}}) {
        const auto number = upper << 32 | static_cast<std::uint32_t>(reinterpret_cast<ULONG_PTR>(HKEY_CURRENT_USER));
        const std::string at = "a hive with " + std::to_string(upper) + " in its upper half: result";
        check.equal(at, open(reinterpret_cast<HKEY>(number), "Software", &key), ERROR_SUCCESS);
        RegCloseKey(key);
    }
}

void testOpenKey(Suite& suite) {
    const Check check = suite.of("RegOpenKeyA");
    checkPaths(suite, check, openPlainly);
    checkWholePaths(suite, check, openPlainly);
    checkLongPath(suite, check, openPlainly);
    checkHandles(suite, check, openPlainly);

    const Key own(suite.world, "");
    for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
        const std::string what = nothing != nullptr ? "an empty path: " : "no path: ";
        HKEY key = nullptr;
        check.equal(what + "result on a key", RegOpenKeyA(own.get(), nothing, &key), ERROR_SUCCESS);
        check.holds(what + "gives the same handle", key == own.get());
        key = nullptr;
        check.equal(what + "result on a hive", RegOpenKeyA(HKEY_CURRENT_USER, nothing, &key), ERROR_SUCCESS);
        check.holds(what + "gives the hive", key == HKEY_CURRENT_USER);
        check.equal(what + "no place for the key", RegOpenKeyA(own.get(), nothing, nullptr), ERROR_INVALID_PARAMETER);
        check.equal(what + "result on null", RegOpenKeyA(nullptr, nothing, &key), ERROR_SUCCESS);
        check.holds(what + "gives null", key == nullptr);
    }
}

void testOpenKeyEx(Suite& suite) {
    const Check check = suite.of("RegOpenKeyExA");
    checkPaths(suite, check, openForReading);
    checkWholePaths(suite, check, openForReading);
    checkLongPath(suite, check, openForReading);
    checkHandles(suite, check, openForReading);

    const Key own(suite.world, "");
    for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
        const std::string what = nothing != nullptr ? "an empty path: " : "no path: ";
        HKEY key = nullptr;
        check.equal(what + "result on a key", RegOpenKeyExA(own.get(), nothing, 0, KEY_READ, &key), ERROR_SUCCESS);
        check.holds(what + "gives a handle of its own", key != nullptr && key != own.get());
        check.equal(what + "it reads", RegQueryValueExA(key, "none", nullptr, nullptr, nullptr, nullptr),
                    ERROR_FILE_NOT_FOUND);
        check.equal(what + "it closes", RegCloseKey(key), ERROR_SUCCESS);
        key = nullptr;
        check.equal(what + "result on a hive", RegOpenKeyExA(HKEY_CURRENT_USER, nothing, 0, KEY_READ, &key),
                    ERROR_SUCCESS);
        check.holds(what + "gives the hive", key == HKEY_CURRENT_USER);
        check.equal(what + "a closed handle", RegOpenKeyExA(closedKey(suite.world), nothing, 0, KEY_READ, &key),
                    ERROR_INVALID_HANDLE);
    }
    HKEY same = nullptr;
    check.equal("classes, a backslash alone: result", RegOpenKeyExA(HKEY_CLASSES_ROOT, "\\", 0, KEY_READ, &same),
                ERROR_SUCCESS);
    check.holds("classes, a backslash alone: a handle of its own", same != nullptr && same != HKEY_CLASSES_ROOT);
    RegCloseKey(same);
    for (const REGSAM access : {REGSAM{KEY_QUERY_VALUE}, REGSAM{KEY_ENUMERATE_SUB_KEYS}, REGSAM{KEY_READ}}) {
        HKEY key = nullptr;
        const std::string what = "access " + std::to_string(access) + ": result";
        check.equal(what, RegOpenKeyExA(own.get(), "Keys", 0, access, &key), ERROR_SUCCESS);
        RegCloseKey(key);
    }
}

void testCloseKey(Suite& suite) {
    const Check check = suite.of("RegCloseKey");
    HKEY key = nullptr;
    RegOpenKeyA(HKEY_CURRENT_USER, suite.world.key("Keys").c_str(), &key);
    check.equal("an open key", RegCloseKey(key), ERROR_SUCCESS);
    check.equal("the same key again", RegCloseKey(key), ERROR_INVALID_HANDLE);
    check.equal("null", RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
    for (const HKEY hive : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS, HKEY_CURRENT_CONFIG})
        check.equal("a hive", RegCloseKey(hive), ERROR_SUCCESS);
    check.equal("a hive stays open", RegOpenKeyA(HKEY_CURRENT_USER, suite.world.key().c_str(), &key), ERROR_SUCCESS);
    HKEY below = nullptr;
    check.equal("a key below it", RegOpenKeyA(key, "Keys", &below), ERROR_SUCCESS);
    check.equal("the upper key first", RegCloseKey(key), ERROR_SUCCESS);
    check.equal("the key below still reads", RegQueryValueExA(below, "Value", nullptr, nullptr, nullptr, nullptr),
                ERROR_SUCCESS);
    check.equal("the key below then", RegCloseKey(below), ERROR_SUCCESS);
    check.equal("the key below reads no more", RegQueryValueExA(below, "Value", nullptr, nullptr, nullptr, nullptr),
                ERROR_INVALID_HANDLE);
}

std::string nameAt(HKEY key, DWORD index) {
    Room name(256);
    return RegEnumKeyA(key, index, name.data(), static_cast<DWORD>(name.size())) == ERROR_SUCCESS
               ? std::string(name.text())
               : "no key";
}

void checkOrder(Suite& suite, const Check& check) {
    const Key sorted(suite.world, "Sorted");
    check.text("the first of keys made in their order", nameAt(sorted.get(), 0), "Aardvark");
    check.text("the second", nameAt(sorted.get(), 1), "bee");
    check.text("the third", nameAt(sorted.get(), 2), "Cat");
    check.text("the first again", nameAt(sorted.get(), 0), "Aardvark");
    // The NT family keeps keys sorted by their upper-case names, however they were made, and exports them so.
    const Key mixed(suite.world, "Mixed");
    check.text("the first of keys made in another order", nameAt(mixed.get(), 0), "Aardvark");
    const Check underscore = check.exceptUnderWine("Wine sorts keys by their lower-case names");
    underscore.text("a letter before an underscore", nameAt(mixed.get(), 1), "mAx");
    underscore.text("an underscore behind a letter", nameAt(mixed.get(), 2), "m_x");
    check.text("the last of keys made in another order", nameAt(mixed.get(), 3), "zebra");
}

void testEnumKey(Suite& suite) {
    const Check check = suite.of("RegEnumKeyA");
    checkOrder(suite, check);

    const Key keys(suite.world, "Keys");
    const std::string longest(255, 'n');
    for (const std::string& expected : {"Alpha"s, "K\xE4se"s, longest}) {
        DWORD index = 0;
        while (index < 10 && nameAt(keys.get(), index) != expected)
            ++index;
        const std::string what =
            expected == longest ? "a name of 255 letters" : "a name of " + std::to_string(expected.size()) + " letters";
        const auto length = expected.size();
        for (const std::size_t room : {length + 2, length + 1}) {
            Room name(room);
            const std::string at = what + ", room for " + std::to_string(room) + ": ";
            check.equal(at + "result", RegEnumKeyA(keys.get(), index, name.data(), static_cast<DWORD>(room)),
                        ERROR_SUCCESS);
            check.text(at + "name", name.text(), expected);
            check.holds(at + "nothing is written behind the terminator", name.isUntouchedFrom(length + 1));
        }
        for (const std::size_t room : {length, length - 1, std::size_t{1}, std::size_t{0}}) {
            Room name(room);
            const std::string at = what + ", room for " + std::to_string(room) + ": ";
            check.equal(at + "result", RegEnumKeyA(keys.get(), index, name.data(), static_cast<DWORD>(room)),
                        ERROR_MORE_DATA);
            check.holds(at + "nothing is written behind the room", name.isUntouchedBehind());
        }
    }

    Room name(256);
    const auto size = static_cast<DWORD>(name.size());
    check.equal("the number of keys is an end: result", RegEnumKeyA(keys.get(), 6, name.data(), size),
                ERROR_NO_MORE_ITEMS);
    check.equal("far behind the end: result", RegEnumKeyA(keys.get(), 0xFFFFFFFF, name.data(), size),
                ERROR_NO_MORE_ITEMS);
    check.equal("the end with no room: result", RegEnumKeyA(keys.get(), 6, name.data(), 0), ERROR_NO_MORE_ITEMS);
    const Key empty(suite.world, "Empty");
    check.equal("a key without keys: result", RegEnumKeyA(empty.get(), 0, name.data(), size), ERROR_NO_MORE_ITEMS);
    check.equal("null as handle: result", RegEnumKeyA(nullptr, 0, name.data(), size), ERROR_INVALID_HANDLE);
    check.equal("a closed handle: result", RegEnumKeyA(closedKey(suite.world), 0, name.data(), size),
                ERROR_INVALID_HANDLE);
    check.holds("none of these writes", name.isUntouched());

    const Key zeroed(suite.world, "Zeroed");
    Room whole(16);
    check.equal("a name with a NUL: result", RegEnumKeyA(zeroed.get(), 0, whole.data(), 16), ERROR_SUCCESS);
    check.text("a name with a NUL: all of it", whole.first(4), "a\0b\0"s);
    check.equal("a name with a NUL, room for 3: result", RegEnumKeyA(zeroed.get(), 0, whole.data(), 3),
                ERROR_MORE_DATA);
    check.equal("a name with a NUL, room for 4: result", RegEnumKeyA(zeroed.get(), 0, whole.data(), 4), ERROR_SUCCESS);
}

}  // namespace

void testRegistryKeys(Suite& suite) {
    testOpenKey(suite);
    testOpenKeyEx(suite);
    testCloseKey(suite);
    testEnumKey(suite);
}

}  // namespace conformance
