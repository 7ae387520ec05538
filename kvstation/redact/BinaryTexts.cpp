#include "kvstation/redact/BinaryTexts.h"

#include <algorithm>

#include "simwin/text/CodePage.h"
#include "simwin/text/Utf8.h"

namespace kvstation {
namespace {

constexpr std::size_t kShortestNarrow = 4;
constexpr std::size_t kShortestOther = 3;  // characters
constexpr std::size_t kUnitSize = 2;

// A character at a place of data: its bytes there, 0 where none begins that can be shown, and its text.
struct Taken {
    std::size_t size;
    std::string text;
};
using Take = Taken (*)(std::string_view bytes);  // of the bytes from a place on

Taken takeNarrow(std::string_view bytes) {
    const std::size_t size = simwin::characterLength(bytes);
    return simwin::isControl(bytes[0]) ? Taken{} : Taken{size, std::string(bytes.substr(0, size))};
}

Taken takeAscii(std::string_view bytes) {
    return simwin::byteOf(bytes[0]) >= 0x80 || simwin::isControl(bytes[0]) ? Taken{}
                                                                           : Taken{1, std::string(1, bytes[0])};
}

// One or two units of UTF-16 that the page holds just so.
Taken takeAnyWide(std::string_view bytes) {
    for (const std::size_t size : {kUnitSize, 2 * kUnitSize}) {
        const std::u16string units = simwin::utf16FromBytes(bytes.substr(0, size));
        const std::string text = simwin::fromUtf16(units);
        if (bytes.size() >= size && !simwin::isControl(text[0]) && simwin::toUtf16(text) == units)
            return {size, text};
    }
    return {};
}

Taken takeWideLatin(std::string_view bytes) {
    return bytes.size() >= kUnitSize && bytes[1] == '\0' ? takeAnyWide(bytes) : Taken{};
}

// Calls visit(text) for every run of at least so many characters from a place on. Between two runs goes on by a step.
template <class Visit>
void eachTextRun(std::string_view bytes, std::size_t place, Take take, std::size_t shortest, std::size_t step,
                 Visit visit) {
    while (place < bytes.size()) {
        BinaryText run{place, 0, step == kUnitSize, ""};
        std::size_t count = 0;
        for (; place < bytes.size(); ++count) {
            const Taken one = take(bytes.substr(place));
            if (one.size == 0)
                break;
            run.text += one.text;
            place += one.size;
        }
        run.size = place - run.place;
        if (count >= shortest)
            visit(run);
        place += step;
    }
}

void replaceRuns(std::string& bytes, std::size_t start, Take take, std::size_t step, const ReplaceText& replace) {
    const std::string before = bytes;
    eachTextRun(before, start, take, kShortestOther, step, [&](const BinaryText& run) {
        const std::string made = replace(run.text);
        const std::string data = run.isWide ? widened(made) : made;
        if (data.size() == run.size)
            bytes.replace(run.place, run.size, data);
    });
}

}  // namespace

std::vector<BinaryText> textsIn(std::string_view bytes, bool isText) {
    std::vector<BinaryText> texts;
    const auto add = [&](const BinaryText& run) { texts.push_back(run); };
    eachTextRun(bytes, 0, takeNarrow, 1, 1, [&](const BinaryText& run) {
        if (isText || run.size >= kShortestNarrow)
            add(run);
    });
    if (!isText && simwin::hasDoubleBytes())
        eachTextRun(bytes, 0, takeAscii, kShortestNarrow, 1, add);
    eachTextRun(bytes, 0, takeWideLatin, kShortestOther, kUnitSize, add);
    eachTextRun(bytes, 1, takeWideLatin, kShortestOther, kUnitSize, add);
    return texts;
}

std::string textAt(std::string_view bytes, const BinaryText& place) {
    const std::string_view data = bytes.substr(place.place, place.size);
    return place.isWide ? simwin::fromUtf16(data) : std::string(data);
}

// Two zeros end several narrow texts too, so that other letters count in no value of texts, nor where all bytes are
// those of a narrow text.
std::optional<std::string> wideTextOf(std::string_view bytes, bool isText) {
    if (bytes.size() < 2 * kUnitSize || bytes.size() % kUnitSize != 0)
        return std::nullopt;
    const std::u16string units = simwin::utf16FromBytes(bytes);
    const bool isLatin = std::ranges::all_of(units, [](char16_t unit) { return unit < 0x100; });
    const bool isEnded = units.find(u'\0') == units.size() - 1;
    const bool isAscii = std::ranges::all_of(bytes.substr(0, bytes.size() - kUnitSize), [](char byte) {
        return takeAscii({&byte, 1}).size != 0;
    });
    const std::string text = simwin::fromUtf16(units);
    if ((!isLatin && (isText || !isEnded || isAscii)) || simwin::toUtf16(text) != units)
        return std::nullopt;
    return text;
}

std::string widened(std::string_view text) {
    return simwin::toUtf16Bytes(text);
}

void replaceAscii(std::string& bytes, const ReplaceText& replace) {
    if (simwin::hasDoubleBytes())
        replaceRuns(bytes, 0, takeAscii, 1, replace);
}

void replaceWideLatin(std::string& bytes, const ReplaceText& replace) {
    for (const std::size_t start : {std::size_t{0}, std::size_t{1}})
        replaceRuns(bytes, start, takeWideLatin, kUnitSize, replace);
}

void replaceAnyWide(std::string& bytes, const ReplaceText& replace) {
    for (const std::size_t start : {std::size_t{0}, std::size_t{1}})
        replaceRuns(bytes, start, takeAnyWide, kUnitSize, replace);
}

}  // namespace kvstation
