#include "tests/fuzz/FuzzedStation.h"

#include <fnmatch.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "simwin/station/StationMembers.h"
#include "tests/fuzz/FuzzedRegistry.h"
#include "tests/kvstation/cause/Random.h"
#include "tests/kvstation/cause/StationRuns.h"
#include "tests/stations/StationNames.h"

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

// In UTF-8, where no half of a character is a backslash.
std::string withSlashes(std::string_view path) {
    std::string text = simwin::toUtf8(path);
    std::ranges::replace(text, '\\', '/');
    return text;
}

// The value's path, of which a key below HKEY_CLASSES_ROOT is that of HKEY_LOCAL_MACHINE.
std::string valuePath(std::string_view key, std::string_view value) {
    return withSlashes(simwin::withClassesInPlace(key)) + "/" + withSlashes(value);
}

// The video adapter's key, which has any path: the device map tells it.
constexpr std::string_view kVideoKey = "HKEY_LOCAL_MACHINE\\System\\Video0";

struct Pattern {
    std::string path;
    bool isOfAnyKey;  // its end is that of the path
};

std::vector<Pattern> fuzzedValues() {
    std::vector<Pattern> patterns;
    for (const kvfuzz::RegistryPlace& place : kvfuzz::fuzzedPlaces()) {
        const bool isOfAnyKey = place.key == kVideoKey;
        patterns.push_back(
            {isOfAnyKey ? "/" + withSlashes(place.value) : valuePath(place.key, place.value), isOfAnyKey});
    }
    return patterns;
}

bool isFuzzedValue(const std::string& path) {
    static const std::vector<Pattern> patterns = fuzzedValues();
    return std::ranges::any_of(patterns, [&](const Pattern& pattern) {
        return pattern.isOfAnyKey
                   ? path.ends_with(pattern.path)
                   : fnmatch(pattern.path.c_str(), path.c_str(), FNM_PATHNAME | FNM_NOESCAPE | FNM_CASEFOLD) == 0;
    });
}

bool isFuzzedVariable(const std::string& name) {
    return std::ranges::any_of(kvfuzz::fuzzedVariables(),
                               [&](std::string_view one) { return simwin::equalNoCase(one, name); });
}

// What a collection on one of the described stations reads, and the fuzzer never sets.
std::set<std::string> readButNotFuzzed(const std::string& station) {
    const simwin::Station described = kvtest::stationNamed(station);
    const simwin::CodePageScope scope(described.codePages.ansi);
    std::set<std::string> missing;
    for (const kvstation::TimedCall& timed : kvtest::callsOf(described)) {
        const simwin::ObservedCall& call = timed.call;
        const auto text = [&](std::size_t index) { return std::string(simwin::textOf(call.parameters[index])); };
        if (call.name == "RegQueryValueExA") {
            if (const std::string path = valuePath(call.subject, text(1)); !isFuzzedValue(path))
                missing.insert(path);
        } else if (call.name == "KVGetEnv") {
            if (!isFuzzedVariable(text(0)))
                missing.insert(text(0));
        }
    }
    return missing;
}

TEST(FuzzedStation, HasWhatTheDescribedStationsAreReadFor) {
    for (const std::string& station : kvtest::stationNames())
        EXPECT_THAT(readButNotFuzzed(station), testing::IsEmpty()) << station;
}

}  // namespace
