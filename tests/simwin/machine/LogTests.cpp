#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <functional>

#include "simwin/calls/CallTable.h"
#include "simwin/calls/Calls.h"
#include "simwin/machine/Relay.h"
#include "tests/simwin/EveryCall.h"
#include "tests/simwin/Running.h"

namespace {

using namespace simwin;

std::vector<std::string> logOf(const std::function<void()>& run) {
    Running running(describedForEveryCall());
    running.machine.keepLog(true);
    run();
    std::vector<std::string> lines;
    for (const LoggedCall& call : running.machine.log())
        lines.push_back(call.name + "(" + call.arguments + ") = " + call.answer + (call.failedOnPurpose ? " !" : ""));
    return lines;
}

TEST(Log, TellsArgumentsAndAnswers) {
    EXPECT_THAT(logOf(makeRegistryCalls),
                testing::ElementsAre(
                    "RegOpenKeyA(HKEY_LOCAL_MACHINE 0xffffffff80000002, \"SOFTWARE\\\\Product\") = "
                    "0, HKEY_LOCAL_MACHINE\\SOFTWARE\\Product 0x10000004",
                    "RegOpenKeyExA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product 0x10000004, \"Sub\", 0, 131097) = "
                    "0, HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008",
                    "RegEnumKeyA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product 0x10000004, 0, 16) = 0, \"Sub\"",
                    "RegEnumValueA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008, 0, null) = 0, \"Name\", 4, 1",
                    "RegQueryValueExA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008, \"Name\", null) = 0, 1, 4",
                    "RegQueryValueExA(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008, \"Name\", null) = "
                    "0, 1, \"abc\", 4",
                    "RegCloseKey(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product\\Sub 0x10000008) = 0",
                    "RegCloseKey(HKEY_LOCAL_MACHINE\\SOFTWARE\\Product 0x10000004) = 0"));
}

TEST(Log, TellsNoAnswerOfACallThatFailed) {
    EXPECT_THAT(logOf([] {
                    std::array<char, 4> buffer = {'x'};
                    DWORD size = 2;
                    GetComputerNameA(buffer.data(), &size);
                    LoadLibraryA("\x80.dll");
                    Machine::current().failCall(3);
                    GetUserNameA(buffer.data(), &size);
                }),
                testing::ElementsAre("GetComputerNameA() = 0", "LoadLibraryA(\"\xE2\x82\xAC.dll\") = null",
                                     "GetUserNameA() = 0 !"));
}

TEST(Log, HoldsEveryCallOfARun) {
    Running running(describedForEveryCall());
    running.machine.keepLog(true);
    makeEveryCall();
    EXPECT_EQ(running.machine.log().size(), running.machine.calls());
    for (const CallEntry& entry : callTable()) {
        const bool isHeap = entry.name == "HeapAlloc" || entry.name == "HeapFree" || entry.name == "GetProcessHeap";
        const bool isLogged = std::any_of(running.machine.log().begin(), running.machine.log().end(),
                                          [&](const LoggedCall& call) { return call.name == entry.name; });
        EXPECT_NE(isLogged, isHeap) << entry.name;
    }
}

struct SubjectsOfCalls : CallObserver {
    void begins(const ObservedCall& call) override { lines.push_back(call.name + " of \"" + call.subject + "\""); }

    std::vector<std::string> lines;
};

std::vector<std::string> subjectsOfEveryCall(Machine& machine) {
    SubjectsOfCalls subjects;
    machine.observe(&subjects);
    const Machine::Scope scope(machine);
    makeEveryCall();
    return subjects.lines;
}

TEST(Log, TellsWhatAHandleStandsForWhereAnotherMachineGaveIt) {
    Machine machine(describedForEveryCall());
    Machine behind(describedForEveryCall());
    Relay relay(behind);
    Machine watching{Station()};
    watching.relayTo(&relay);
    EXPECT_THAT(subjectsOfEveryCall(watching), testing::ElementsAreArray(subjectsOfEveryCall(machine)));
}

}  // namespace
