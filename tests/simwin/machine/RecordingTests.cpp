#include "simwin/machine/Recording.h"

#include <gmock/gmock.h>

#include "framework/Windows.h"
#include "simwin/machine/Machine.h"
#include "tests/simwin/EveryCall.h"

namespace {

using namespace simwin;
using testing::IsEmpty;
using testing::SizeIs;

TEST(Recording, MakesTheSameCallsWithTheSameAnswersAgain) {
    const auto station = std::make_shared<const Station>(describedForEveryCall());
    Recording recording(station);
    std::vector<LoggedCall> first;
    {
        Machine machine(station);
        const Machine::Scope scope(machine);
        machine.record(&recording);
        machine.keepLog(true);
        makeEveryCall();
        first = machine.log();
    }
    Machine machine(station);
    machine.keepLog(true);
    recording.replay(machine);
    EXPECT_THAT(machine.misuses(), IsEmpty());
    ASSERT_EQ(machine.log().size(), first.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(machine.log()[i].name, first[i].name);
        // Blocks lie at other addresses in every run, and formatted texts are handed on as they came out.
        if (first[i].answer.find("0x") == std::string::npos) {
            EXPECT_EQ(machine.log()[i].answer, first[i].answer) << first[i].name;
        }
    }
    EXPECT_THAT(machine.openHandles(HandleKind::RegistryKey), IsEmpty());
    EXPECT_THAT(machine.openHandles(HandleKind::Process), SizeIs(1));
}

TEST(Recording, CanBeReplayedAgainAndAgain) {
    const auto station = std::make_shared<const Station>(describedForEveryCall());
    Recording recording(station);
    std::uint64_t calls = 0;
    {
        Machine machine(station);
        const Machine::Scope scope(machine);
        machine.record(&recording);
        makeEveryCall();
        calls = machine.calls();
    }
    recording.replay();
    Machine machine(station);
    for (int i = 1; i <= 3; ++i) {
        recording.replay(machine);
        EXPECT_EQ(machine.calls(), calls * static_cast<std::uint64_t>(i));
        EXPECT_THAT(machine.misuses(), IsEmpty());
        EXPECT_THAT(machine.openHandles(HandleKind::Token), SizeIs(i));
    }
}

TEST(Recording, AllocatesAndReleasesOnTheProcessHeapAgain) {
    const auto station = std::make_shared<const Station>();
    Recording recording(station);
    {
        Machine machine(station);
        const Machine::Scope scope(machine);
        void* before = HeapAlloc(GetProcessHeap(), 0, 8);
        machine.record(&recording);
        void* released = HeapAlloc(GetProcessHeap(), 0, 8);
        HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, 4);
        HeapFree(GetProcessHeap(), 0, released);
        HeapFree(GetProcessHeap(), 0, before);
    }
    EXPECT_EQ(recording.size(), 3u);
    Machine machine(station);
    recording.replay(machine);
    EXPECT_EQ(machine.openHeapBlocks(), 1u);
    EXPECT_THAT(machine.misuses(), IsEmpty());
}

}  // namespace
