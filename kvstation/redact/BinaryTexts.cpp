#include "kvstation/redact/BinaryTexts.h"

#include "simwin/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kShortestNarrow = 4;
constexpr std::size_t kShortestWide = 3;

// The text of the characters that stand `step` bytes apart, from a place on. Those of a wide one have a NUL behind
// each.
std::string runAt(std::string_view bytes, std::size_t place, std::size_t step) {
    std::string text;
    for (; place + step <= bytes.size(); place += step) {
        if (simwin::isControl(bytes[place]) || (step == 2 && bytes[place + 1] != '\0'))
            break;
        text += bytes[place];
    }
    return text;
}

void addRuns(std::vector<BinaryText>& texts, std::string_view bytes, std::size_t start, std::size_t step,
             std::size_t shortest) {
    for (std::size_t place = start; place < bytes.size();) {
        std::string text = runAt(bytes, place, step);
        const std::size_t length = text.size();
        if (length >= shortest)
            texts.push_back({place, std::move(text), step == 2});
        place += step * (length + 1);
    }
}

}  // namespace

std::vector<BinaryText> textsIn(std::string_view bytes, bool isText) {
    std::vector<BinaryText> texts;
    addRuns(texts, bytes, 0, 1, isText ? 1 : kShortestNarrow);
    addRuns(texts, bytes, 0, 2, kShortestWide);
    addRuns(texts, bytes, 1, 2, kShortestWide);
    return texts;
}

std::string textAt(std::string_view bytes, const BinaryText& place) {
    std::string text;
    for (std::size_t i = 0; i < place.text.size(); ++i)
        text += bytes[place.place + i * (place.isWide ? 2 : 1)];
    return text;
}

bool isWide(std::string_view bytes) {
    for (std::size_t i = 1; i < bytes.size(); i += 2)
        if (bytes[i] != '\0')
            return false;
    return bytes.size() % 2 == 0 && bytes.size() >= 4;
}

std::string narrowed(std::string_view wide) {
    std::string text;
    for (std::size_t i = 0; i < wide.size(); i += 2)
        text += wide[i];
    return text;
}

std::string widened(std::string_view text) {
    std::string wide;
    for (const char character : text)
        wide += {character, '\0'};
    return wide;
}

}  // namespace kvstation
