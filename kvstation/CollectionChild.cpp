#include "kvstation/CollectionChild.h"

#include <CLI/App.hpp>
#include <memory>

#include "kvstation/CallTimes.h"
#include "kvstation/Errors.h"
#include "kvstation/Library.h"
#include "kvstation/ObservedLibrary.h"
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

// Notes each call before it is made, for a parent that must tell where the collection ended.
class NotedCalls : public CallLog {
  public:
    explicit NotedCalls(SharedCollection& shared) : m_shared(shared) {}

    void begins(const simwin::ObservedCall& call) override {
        CallLog::begins(call);
        // A process that is ended while it collects unloads the library, but that is not where the collection ended.
        if (step() == "module end")
            return;
        note(m_shared.step, "collecting: " + std::string(step()));
        note(m_shared.call, call.name + "(" + call.arguments + ")");
    }
    // The calls themselves are kept for their times alone.
    void ends(const simwin::ObservedCall& call) override {
        if (m_shared.wantsTimes)
            CallLog::ends(call);
    }

  private:
    SharedCollection& m_shared;
};

void collect(SharedCollection& shared) {
    note(shared.step, "loading kvcstat64.dll");
    const Library library;
    note(shared.step, "collecting");
    NotedCalls calls(shared);
    shared.record = collectObserved(library, calls);
    note(shared.step, "unloading kvcstat64.dll");
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

Verb addCollectForParent(CLI::App& tool) {
    const auto memory = std::make_shared<std::uintptr_t>();
    CLI::App* command = tool.add_subcommand(kCollectForParent)->group("");
    command->add_option("memory", *memory)->required();
    return {command, "", [memory] { return collectForParent(*memory); }};
}

}  // namespace kvstation
