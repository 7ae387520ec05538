#include "kvstation/experiments/World.h"

#include <gtest/gtest.h>

#include "kvstation/experiments/Experiments.h"
#include "tests/kvstation/cause/StationRun.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::World;

TEST(World, IsTheSameToTheByteOnceEachChangeIsUnmade) {
    const simwin::Station station = stationNamed("metaframe-session");
    World world(station);
    const std::string before = filesOf(station);
    std::vector<std::string> complaints;
    std::size_t count = 0;
    std::size_t changed = 0;
    {
        const kvstation::Collector collector;
        const StationRun base = runStation(collector, std::make_shared<simwin::Station>(station));
        std::vector<kvstation::AskedCall> calls;
        simwin::Machine machine(station);
        kvstation::runOn(collector, machine, calls);
        for (const kvstation::Question& question : kvstation::questionsOf(calls, world)) {
            std::vector<kvstation::Alternative> all =
                kvstation::alternativesAt(world, question.place, question.row->asks.samples);
            if (all.empty() || ++count % 4 != 0)
                continue;
            kvstation::Alternative& one = all[count % all.size()];
            world.make(one.changes);
            // Another spelling of a version is the same one: not each change is seen in the files.
            changed += filesOf(*world.station()) != before ? 1 : 0;
            world.unmake(one.changes);
            if (filesOf(*world.station()) != before)
                complaints.push_back(nameOf(question.place));
        }
        if (runStation(collector, world.station()).record != base.record)
            complaints.emplace_back("another record");
    }
    EXPECT_GT(changed, 50u);
    EXPECT_EQ(complaints, std::vector<std::string>());
}

TEST(World, IsTheSameToTheByteOnceTheExperimentsAreOver) {
    const simwin::Station station = stationNamed("nt4-alpha-workstation");
    World world(station);
    {
        const kvstation::Collector collector;
        const kvstation::Experiments experiments(world, collector);
    }
    EXPECT_EQ(filesOf(*world.station()), filesOf(station));
}

TEST(World, RefusesWhatNoStationHolds) {
    World world(stationNamed("metaframe-session"));
    EXPECT_FALSE(world.withMember({"keyboard", "type"}, "a text"));
    EXPECT_FALSE(world.withMember({"environment", "NotThere"}, nullptr));
    EXPECT_FALSE(world.withoutKey("HKEY_LOCAL_MACHINE\\NotThere"));
    EXPECT_FALSE(world.withoutKey("HKEY_LOCAL_MACHINE"));
    EXPECT_FALSE(world.withKey("HKEY_LOCAL_MACHINE\\SYSTEM"));
    EXPECT_FALSE(world.withKey("NO_HIVE\\Key"));
    EXPECT_FALSE(world.withKeyNamed("HKEY_LOCAL_MACHINE\\SYSTEM", "SOFTWARE"));
}

TEST(World, FindsNamesInTheLetterCaseOfTheFile) {
    const World world(stationNamed("metaframe-session"));
    EXPECT_EQ(world.resolved({"environment", "clientname"}), (simwin::MemberPath{"environment", "CLIENTNAME"}));
    EXPECT_EQ(world.resolved({"environment", "NotThere"}), (simwin::MemberPath{"environment", "NotThere"}));
    EXPECT_NE(world.find({"session", "clientAddress"}), nullptr);
    EXPECT_EQ(world.find({"session", "nothing"}), nullptr);
}

}  // namespace
}  // namespace kvtest
