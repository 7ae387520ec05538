// The running machine: a described station, and what a program did to it.
//
// The answers (sim_RegOpenKeyA and the others of Calls.inc) ask the machine that is current in the process. Machines
// share their station; nothing is copied when one is made. Not for use by two threads at once.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simwin/machine/AskedQuestions.h"
#include "simwin/machine/HandleTable.h"
#include "simwin/station/Station.h"
#include "simwin/text/CodePage.h"

namespace simwin {

class CallObserver;
class Recording;
class Relay;
struct MachineState;

struct TraceLine {
    int level = 0;
    std::string component;
    std::string text;  // formatted
};

// One call as people read it; texts are UTF-8.
struct LoggedCall {
    std::string name;
    std::string arguments;  // what went in
    std::string answer;     // the result, and what came out when it succeeded
    bool failedOnPurpose = false;
};

// How a call that fails tells so, and the error it gives unless the station states another.
struct Failure {
    enum class How : std::uint8_t {
        Never,  // the call cannot fail
        ReturnsCode,
        ReturnsZero,      // and sets the last error
        ReturnsMinusOne,  // and sets the last error
    };
    How how = How::Never;
    std::uint32_t code = 0;
};

class Machine {
  public:
    explicit Machine(Station station);
    explicit Machine(std::shared_ptr<const Station> station);
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    // Releases what is still allocated, as the end of a process does: texts of the module that live longer dangle.
    ~Machine();

    // The machine that answers now. Without one in force, a machine of which nothing is described.
    static Machine& current() noexcept;

    // Makes a machine current for the scope's life, and puts its ANSI code page in force.
    class Scope {
      public:
        explicit Scope(Machine& machine);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

      private:
        CodePageScope m_codePage;
        Machine* m_previous;
    };

    const Station& station() const noexcept { return *m_station; }
    const std::shared_ptr<const Station>& sharedStation() const noexcept { return m_station; }

    std::uint32_t lastError() const noexcept { return m_lastError; }
    void setLastError(std::uint32_t error) noexcept {
        m_lastError = error;
        m_hasSetError = true;
    }
    // What the last call set as last error; 0 when it left the one of an earlier call.
    std::uint32_t errorOfCall() const noexcept { return m_hasSetError ? m_lastError : 0; }

    // What is open, by kind and in the order of opening, but libraries in the order of their list, once for each load.
    std::vector<OpenHandle> openHandles() const;
    std::vector<OpenHandle> openHandles(HandleKind kind) const;
    // Blocks of the process heap; texts of the module that a test still holds count too.
    std::size_t openHeapBlocks() const noexcept { return m_openHeapBlocks; }

    // Wrong uses of handles, each in one line: closed twice, never opened, of another kind. Empty after a proper run.
    const std::vector<std::string>& misuses() const noexcept { return m_misuses; }

    const std::vector<TraceLine>& traceLines() const noexcept { return m_traceLines; }
    // Off: lines are formatted and forgotten, for runs that make very many.
    void keepTrace(bool keep) noexcept { m_keepsTrace = keep; }

    // The variables that the program set through the product's library, in the order of their first setting, each
    // with the value of the last. Names are as in the last setting too.
    const std::vector<Variable>& variablesSet() const noexcept { return m_variablesSet; }

    // Calls so far. Those that allocate from the process heap are not calls in this sense.
    std::uint64_t calls() const noexcept { return m_calls; }
    // Those among them that can fail.
    std::uint64_t faultableCalls() const noexcept { return m_faultableCalls; }
    // Allocations from the process heap so far.
    std::uint64_t allocations() const noexcept { return m_allocations; }

    // The n-th call that can fail, counted from 1 and from the machine's start, fails as Windows would fail it.
    void failCall(std::uint64_t n) noexcept;
    // The n-th call of all, counted from 1, is answered by a station that `toggle` changes right before and changes
    // back right behind it. Not for calls of the process heap. `toggle` must outlive the run.
    void changeCall(std::uint64_t n, const std::function<void()>& toggle) noexcept {
        m_callToChange = n;
        m_toggle = &toggle;
    }
    // The same of every call of a function, whose name must outlive the run too.
    void changeCallsOf(std::string_view function, const std::function<void()>& toggle) noexcept {
        m_functionToChange = function;
        m_toggle = &toggle;
    }
    // The n-th allocation from the process heap answers null.
    void failAllocation(std::uint64_t n) noexcept { m_allocationToFail = n; }
    // The call that failCall failed; empty before.
    const std::string& failedCall() const noexcept { return m_failedCall; }

    void keepLog(bool keep) noexcept;
    const std::vector<LoggedCall>& log() const noexcept { return m_log; }
    void clearLog() noexcept { m_log.clear(); }

    // Records the calls from now on; null ends it. The recording must outlive its being set here.
    void record(Recording* recording) noexcept;

    // Tells each call from now on; null ends it.
    void observe(CallObserver* observer) noexcept;

    // Tells each question from now on: the call's name, what it was given, and whether it succeeded. Null ends it.
    void noteQuestions(AskedQuestions* questions) noexcept;

    // Passes the calls on from now on in place of answering them, so that this machine only watches; null ends it.
    // The process heap's are answered all the same.
    void relayTo(Relay* relay) noexcept;

    // The rest is for the answers.

    MachineState& state() noexcept { return *m_state; }

    // Counts a call; true when it is to fail, and then `failure` holds the error to give.
    bool countCall(std::string_view name, Failure& failure) {
        ++m_calls;
        m_hasSetError = false;
        if (failure.how == Failure::How::Never)
            return false;
        ++m_faultableCalls;
        return m_mayFail && decideFailure(name, failure);
    }
    // True when changeCall or changeCallsOf named the call that is made now.
    bool isCallToChange(const char* name) const noexcept {
        return m_calls == m_callToChange || (!m_functionToChange.empty() && m_functionToChange == name);
    }
    void toggleStation() const { (*m_toggle)(); }
    // Counts an allocation; true when it is to fail.
    bool countAllocation() noexcept { return ++m_allocations == m_allocationToFail; }
    void countHeapBlocks(int change) noexcept { m_openHeapBlocks += static_cast<std::size_t>(change); }

    bool isWatched() const noexcept { return m_isWatched; }
    // Somebody wants to know more of each call than what it asks.
    bool isTold() const noexcept { return m_isTold; }
    // Null when the call is none.
    AskedQuestions* questionsWith(const char* call) const {
        return m_questions != nullptr && m_questions->isQuestion(call) ? m_questions : nullptr;
    }
    // The same for each handle of one key, or its value.
    std::uint64_t identify(std::uintptr_t handle);
    bool keepsLog() const noexcept { return m_keepsLog; }
    Recording* recording() const noexcept { return m_recording; }
    CallObserver* observer() const noexcept { return m_observer; }
    Relay* relay() const noexcept { return m_relay; }
    // Who answers in the end.
    const Machine& answering() const noexcept;
    void addToLog(LoggedCall call) { m_log.push_back(std::move(call)); }

    void reportMisuse(std::string_view call, std::uintptr_t handle, std::string_view what);
    void trace(TraceLine line);
    void noteVariable(std::string_view name, std::string_view value);

    // True when the value is an open handle or block of any kind.
    bool isOpen(std::uintptr_t value);
    // What a handle stands for, in a few words: a key's path, a library's name; empty when it is none.
    std::string describe(std::uintptr_t handle);

  private:
    bool decideFailure(std::string_view name, Failure& failure);
    void noteWatch() noexcept;

    std::shared_ptr<const Station> m_station;
    std::unique_ptr<MachineState> m_state;
    std::uint32_t m_lastError = 0;
    std::uint64_t m_calls = 0;
    std::uint64_t m_faultableCalls = 0;
    std::uint64_t m_callToFail = 0;
    std::uint64_t m_callToChange = 0;
    std::string_view m_functionToChange;
    const std::function<void()>* m_toggle = nullptr;
    std::uint64_t m_allocations = 0;
    std::uint64_t m_allocationToFail = 0;
    std::size_t m_openHeapBlocks = 0;
    bool m_hasSetError = false;
    bool m_mayFail = false;
    bool m_keepsTrace = true;
    bool m_keepsLog = false;
    bool m_isTold = false;
    bool m_isWatched = false;
    AskedQuestions* m_questions = nullptr;
    Recording* m_recording = nullptr;
    CallObserver* m_observer = nullptr;
    Relay* m_relay = nullptr;
    std::string m_failedCall;
    std::vector<std::string> m_misuses;
    std::vector<TraceLine> m_traceLines;
    std::vector<Variable> m_variablesSet;
    std::vector<LoggedCall> m_log;
};

}  // namespace simwin
