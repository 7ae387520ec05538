// What the experiments say of a station's causes, held against changes that they did not make: on the described
// stations and on stations out of the fuzzer's generator. KV_PROOF_STATIONS=2000 proves so many of these, and every
// answer of the described ones.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "simwin/text/ReadError.h"
#include "tests/fuzz/FuzzedStation.h"
#include "tests/kvstation/cause/Proof.h"
#include "tests/kvstation/cause/Random.h"
#include "tests/kvstation/cause/StationEdits.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

constexpr std::size_t kAll = static_cast<std::size_t>(-1);
constexpr std::size_t kFewStations = 6;
constexpr std::string_view kShortForm[] = {"metaframe-session", "nt4-mips-workstation"};
constexpr std::size_t kMostTold = 40;

// 0: not the long form.
std::size_t stationsWanted() {
    const char* text = std::getenv("KV_PROOF_STATIONS");
    return text != nullptr ? std::strtoul(text, nullptr, 10) : 0;
}

std::string lines(std::vector<std::string> complaints) {
    const std::size_t count = complaints.size();
    complaints.resize(std::min(count, kMostTold));
    std::string text = count != 0 ? std::to_string(count) + " complaints\n" : "";
    for (const std::string& one : complaints)
        text += one + "\n";
    return text;
}

class ProofOfStation : public testing::TestWithParam<std::string> {};

TEST_P(ProofOfStation, CausesThatAreNamedChangeTheirFieldAndNoOthersDo) {
    const simwin::Station station = kvstation::readStationFolder(stationFolder(GetParam()));
    const bool isLong = stationsWanted() != 0;
    if (!isLong && std::ranges::find(kShortForm, GetParam()) == std::end(kShortForm))
        GTEST_SKIP() << "takes too long under sanitizers; KV_PROOF_STATIONS=2000 proves every station";
    ProofResult result;
    {
        const kvstation::Collector collector;
        result = prove(collector, station, 1,
                       isLong ? ProofEffort{kAll, kAll, true} : ProofEffort{.mostEdits = 120, .mostFailures = 120});
    }
    RecordProperty("runs", std::to_string(result.runs));
    EXPECT_EQ(lines(result.complaints), "");
}

INSTANTIATE_TEST_SUITE_P(Stations, ProofOfStation, testing::ValuesIn(stationNames()), kvtest::NameOfStationTest());

// As its files tell it, which cannot hold everything that the generator thinks of.
std::optional<simwin::Station> fuzzedStation(std::uint64_t seed) {
    Random random(seed);
    const std::string bytes = random.bytes(100 + random.below(900));
    kvfuzz::InputReader input(bytes);
    try {
        return writtenAndRead(kvfuzz::readFuzzedStation(input));
    } catch (const simwin::ReadError&) {
        return std::nullopt;
    }
}

TEST(Proof, HoldsOnStationsOfTheFuzzersGenerator) {
    const std::size_t wanted = stationsWanted() != 0 ? stationsWanted() : kFewStations;
    std::vector<std::string> complaints;
    std::size_t proven = 0;
    std::size_t runs = 0;
    std::uint64_t seed = 1;
    {
        const kvstation::Collector collector;
        for (; proven < wanted && seed < 4 * wanted + 100; ++seed) {
            const std::optional<simwin::Station> station = fuzzedStation(seed);
            if (!station)
                continue;
            const simwin::CodePageScope scope(station->codePages.ansi);
            const ProofEffort effort = stationsWanted() != 0 ? ProofEffort{kAll, kAll, true} : ProofEffort{40, 40};
            ProofResult result = prove(collector, *station, seed, effort);
            for (const std::string& one : result.complaints)
                complaints.push_back("station " + std::to_string(seed) + ": " + one);
            runs += result.runs;
            ++proven;
        }
    }
    RecordProperty("runs", std::to_string(runs));
    EXPECT_EQ(proven, wanted);
    EXPECT_EQ(lines(complaints), "");
}

}  // namespace
}  // namespace kvtest
