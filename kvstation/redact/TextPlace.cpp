#include "kvstation/redact/TextPlace.h"

#include "simwin/text/CodePage.h"

namespace kvstation {

TextPlace placeIn(std::string_view name) {
    const std::string lower = simwin::lowerCase(name);
    const auto holds = [&](const char* part) { return lower.find(part) != std::string::npos; };
    return holds("version") || holds("build") ? TextPlace::Version : TextPlace::Anywhere;
}

}  // namespace kvstation
