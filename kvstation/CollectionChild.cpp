#include "kvstation/CollectionChild.h"

#include <CLI/App.hpp>
#include <charconv>
#include <memory>

#include "kvstation/CallLog.h"
#include "kvstation/CallTimes.h"
#include "kvstation/Errors.h"
#include "kvstation/NotedCollection.h"
#include "kvstation/Tool.h"
#include "kvstation/Verb.h"

namespace kvstation {
namespace {

// For the exception filter, which Windows hands nothing of ours.
SharedCollection* theCollection = nullptr;

LONG WINAPI noteCrash(EXCEPTION_POINTERS* exception) {
    theCollection->exceptionCode = exception->ExceptionRecord->ExceptionCode;
    theCollection->exceptionAddress = reinterpret_cast<std::uintptr_t>(exception->ExceptionRecord->ExceptionAddress);
    theCollection->state = CollectionState::Crashed;
    TerminateProcess(GetCurrentProcess(), kExitFailure);
    return EXCEPTION_EXECUTE_HANDLER;
}

// A crash is noted for the parent, without a debugger or a message box.
void catchCrashes(SharedCollection& shared) {
    theCollection = &shared;
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    SetUnhandledExceptionFilter(noteCrash);
}

void collect(SharedCollection& shared) {
    CallLog calls;
    shared.record = collectNoted(shared, shared.wantsTimes ? &calls : nullptr);
    if (shared.wantsTimes)
        note(shared.times, timesText(calls.calls()));
}

int collectForParent(std::uintptr_t memory) {
    const MappedCollection shared(reinterpret_cast<HANDLE>(memory));
    catchCrashes(*shared);
    try {
        collect(*shared);
        shared->state = CollectionState::Done;
        return kExitSuccess;
    } catch (const Failure& failure) {
        note(shared->failure, failure.what());
        shared->state = CollectionState::Failed;
        return kExitFailure;
    }
}

}  // namespace

int runForParent(const std::string& memory, const std::vector<std::string>& words) {
    std::uintptr_t handle = 0;
    std::from_chars(memory.data(), memory.data() + memory.size(), handle);
    try {
        const MappedCollection shared(reinterpret_cast<HANDLE>(handle));
        catchCrashes(*shared);
        const int status = runTool(words);
        shared->state = CollectionState::Done;
        return status;
    } catch (const Failure& failure) {
        reportError(failure.what());
        return kExitFailure;
    }
}

SharedCollection* parentsMemory() {
    return theCollection;
}

Verb addCollectForParent(CLI::App& tool) {
    const auto memory = std::make_shared<std::uintptr_t>();
    CLI::App* command = tool.add_subcommand(kCollectForParent)->group("");
    command->add_option("memory", *memory)->required();
    return {command, "", [memory] { return collectForParent(*memory); }};
}

}  // namespace kvstation
