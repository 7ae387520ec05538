#include "simwin/station/StationPage.h"

#include "simwin/station/StationMembers.h"

namespace simwin {
namespace {

std::string table(const MemberTexts& members) {
    std::string text = "| member | value | default | meaning |\n|---|---|---|---|\n";
    for (const MemberText& member : members)
        text +=
            "| `" + member.path + "` | " + member.value + " | " + member.byDefault + " | " + member.meaning + " |\n";
    return text;
}

}  // namespace

std::string stationMembersPage() {
    return table(stationMemberTexts()) +
           "\nA text that a companion's call fills in is answered with result 1. It may be told by its parts:\n\n" +
           table(companionTextMembers());
}

}  // namespace simwin
