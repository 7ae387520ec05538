#include "kvstation/CollectionChild.h"

#include <CLI/App.hpp>
#include <memory>

#include "kvstation/Errors.h"
#include "kvstation/Library.h"
#include "kvstation/SharedCollection.h"
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
    note(shared.step, "loading kvcstat64.dll");
    const Library library;
    note(shared.step, "collecting");
    library.getStationData(shared.record);
    note(shared.step, "unloading kvcstat64.dll");
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

Verb addCollectForParent(CLI::App& tool) {
    const auto memory = std::make_shared<std::uintptr_t>();
    CLI::App* command = tool.add_subcommand(kCollectForParent)->group("");
    command->add_option("memory", *memory)->required();
    return {command, "", [memory] { return collectForParent(*memory); }};
}

}  // namespace kvstation
