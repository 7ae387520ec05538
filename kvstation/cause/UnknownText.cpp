#include "kvstation/cause/UnknownText.h"

#include "kvstation/platform/VisibleText.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

std::string unknownText(const simwin::Station& station) {
    if (station.unknown.empty())
        return {};
    std::string text = "\nNot written down in this station, and therefore as if not there:\n";
    for (const std::string& one : station.unknown)
        text += "  " + visible(simwin::toUtf8(one)) + "\n";
    return text;
}

}  // namespace kvstation
