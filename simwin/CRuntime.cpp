#include <cstring>
#include <limits>

#include "simwin/Call.h"
#include "simwin/Calls.h"
#include "simwin/CodePage.h"

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
Character* change(Character* text, char (*changed)(char) noexcept) {
    for (Character* place = text; place != nullptr && *place != 0; ++place)
        *place = static_cast<Character>(changed(static_cast<char>(*place)));
    return text;
}

char upperInC(char character) noexcept {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

int compare(const unsigned char* left, const unsigned char* right) {
    if (left == nullptr || right == nullptr)
        return std::numeric_limits<int>::max();
    const int difference = std::strcmp(reinterpret_cast<const char*>(left), reinterpret_cast<const char*>(right));
    return difference < 0 ? -1 : difference > 0 ? 1 : 0;
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
        "_mbsupr", kNeverFails, [&](Machine&) { return change(text, toUpper); }, ChangedText<unsigned char>{text});
}

unsigned char* sim__mbslwr(unsigned char* text) {
    return makeCall<sim__mbslwr>(
        "_mbslwr", kNeverFails, [&](Machine&) { return change(text, toLower); }, ChangedText<unsigned char>{text});
}

int sim__mbscmp(const unsigned char* left, const unsigned char* right) {
    return makeCall<[](const char* l, const char* r) {
        return sim__mbscmp(reinterpret_cast<const unsigned char*>(l), reinterpret_cast<const unsigned char*>(r));
    }>(
        "_mbscmp", kNeverFails, [&](Machine&) { return compare(left, right); }, textOf(left), textOf(right));
}
