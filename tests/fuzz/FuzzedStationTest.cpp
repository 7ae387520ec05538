#include "tests/fuzz/FuzzedStation.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>

#include "simwin/station/StationMembers.h"
#include "tests/kvstation/cause/Random.h"

namespace {

using Json = simwin::JsonView::Json;

constexpr std::uint64_t kStations = 100;

// Nothing of these is answered.
constexpr std::string_view kNeverMade[] = {
    "description",  // for people
    "collected",   "collected.at", "collected.library", "collected.tool",
    "unknown",  // what is not there, for people
};

// A word of capitals in a member's path is one for any name.
bool isAnyName(std::string_view name) {
    return std::ranges::all_of(name, [](unsigned char character) { return std::isupper(character) != 0; });
}

// Whether the member stands there with another value than its default.
bool comesUp(const Json& json, std::string_view path, const std::string& byDefault) {
    if (path.empty())
        return json.dump() != byDefault;
    const std::size_t end = std::min(path.find('.'), path.size());
    const std::string name(path.substr(0, end));
    const std::string_view below = path.substr(std::min(end + 1, path.size()));
    if (!isAnyName(name))
        return json.is_object() && json.contains(name) && comesUp(json[name], below, byDefault);
    return json.is_structured() &&
           std::ranges::any_of(json, [&](const Json& one) { return comesUp(one, below, byDefault); });
}

simwin::MemberTexts allMembers() {
    simwin::MemberTexts all = simwin::stationMemberTexts();
    for (const char* text : {"session.clientName.", "session.clientAddress.", "session.domain.", "citrix.clientName."})
        for (simwin::MemberText part : simwin::companionTextMembers()) {
            part.path.insert(0, text);
            all.push_back(part);
        }
    return all;
}

Json madeStation(std::uint64_t seed) {
    kvtest::Random random(seed);
    const std::string bytes = random.bytes(random.below(1000));
    kvfuzz::InputReader input(bytes);
    const simwin::Station station = kvfuzz::readFuzzedStation(input);
    const simwin::CodePageScope scope(station.codePages.ansi);
    return simwin::stationMembers(station);
}

TEST(FuzzedStation, HasEachMemberOfAStationInOneOf100) {
    simwin::MemberTexts missing = allMembers();
    for (std::uint64_t seed = 1; seed <= kStations && missing.size() > std::size(kNeverMade); ++seed) {
        const Json json = madeStation(seed);
        std::erase_if(missing, [&](const auto& member) { return comesUp(json, member.path, member.byDefault); });
    }
    std::vector<std::string> paths;
    std::ranges::transform(missing, std::back_inserter(paths), &simwin::MemberText::path);
    EXPECT_THAT(paths, testing::UnorderedElementsAreArray(kNeverMade));
}

}  // namespace
