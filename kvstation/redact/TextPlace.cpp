#include "kvstation/redact/TextPlace.h"

#include <algorithm>

#include "simwin/text/CodePage.h"

namespace kvstation {

TextPlace placeIn(std::string_view name) {
    const std::string lower = simwin::lowerCase(name);
    const auto holds = [&](const char* part) { return lower.find(part) != std::string::npos; };
    return holds("version") || holds("build") ? TextPlace::Version : TextPlace::Anywhere;
}

// Netscape's own keys are called as its versions.
TextPlace placeBelow(std::string_view key, TextPlace place) {
    return simwin::equalNoCase(key, "Netscape") ? TextPlace::Version : place;
}

void eachKeyName(std::string_view path, const KeyNameVisitor& visit) {
    auto place = TextPlace::Anywhere;
    for (std::size_t from = 0; from <= path.size();) {
        const std::size_t end = std::min(simwin::findCharacter(path, '\\', from), path.size());
        const std::string_view name = path.substr(from, end - from);
        if (from != 0)
            visit(name, place);
        place = placeBelow(name, place);
        from = end + 1;
    }
}

}  // namespace kvstation
