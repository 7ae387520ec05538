// One platform call as every answer makes it: counted, failed on purpose, answered, and where somebody watches also
// logged and kept for replay.
//
// An answer names each of its parameters with a role that says how the parameter is told in the log and how it is
// kept.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "framework/Windows.h"
#include "simwin/machine/CallObserver.h"
#include "simwin/machine/CallText.h"
#include "simwin/machine/Machine.h"
#include "simwin/machine/Recording.h"
#include "simwin/machine/Relay.h"
#include "simwin/machine/Roles.h"

namespace simwin {

inline constexpr Failure kNeverFails{};
constexpr Failure failsWithCode(std::uint32_t code) {
    return {Failure::How::ReturnsCode, code};
}
constexpr Failure failsWithZero(std::uint32_t lastError) {
    return {Failure::How::ReturnsZero, lastError};
}
constexpr Failure failsWithMinusOne(std::uint32_t lastError) {
    return {Failure::How::ReturnsMinusOne, lastError};
}

// How an answer refuses: the reason for GetLastError, and FALSE for the caller.
inline BOOL fail(Machine& machine, DWORD error) {
    machine.setLastError(error);
    return FALSE;
}

template <class Result>
bool succeeded(const Failure& failure, Result result) {
    switch (failure.how) {
        case Failure::How::ReturnsCode:
            return result == Result{};
        case Failure::How::ReturnsZero:
            return result != Result{};
        case Failure::How::ReturnsMinusOne:
            if constexpr (std::is_pointer_v<Result>)
                return asNumber(result) != static_cast<std::uintptr_t>(-1);
            else
                return result != static_cast<Result>(-1);
        case Failure::How::Never:
            break;
    }
    return true;
}

template <class Result>
Result failedResult(Machine& machine, const Failure& failure) {
    if (failure.how != Failure::How::ReturnsCode)
        machine.setLastError(failure.code);
    if constexpr (std::is_void_v<Result>) {
        return;
    } else if constexpr (std::is_pointer_v<Result>) {
        return asPointer<Result>(failure.how == Failure::How::ReturnsMinusOne ? static_cast<std::uintptr_t>(-1) : 0);
    } else {
        if (failure.how == Failure::How::ReturnsCode)
            return static_cast<Result>(failure.code);
        return failure.how == Failure::How::ReturnsMinusOne ? static_cast<Result>(-1) : Result{};
    }
}

// Puts ", " between the parts that have something to say.
template <class... Roles>
std::string joinInputs(Machine& machine, const Roles&... roles) {
    std::string all;
    [[maybe_unused]] const auto append = [&](const auto& role) {
        std::string part;
        role.input(part, machine);
        if (!part.empty())
            all += (all.empty() ? "" : ", ") + part;
    };
    (append(roles), ...);
    return all;
}

template <class Role>
constexpr bool kTellsAlways = requires {
    Role::kTellsAlways;
};

template <class... Roles>
void joinOutputs(std::string& all, Machine& machine, bool succeeded, const Roles&... roles) {
    [[maybe_unused]] const auto append = [&](const auto& role) {
        if (!succeeded && !kTellsAlways<std::remove_cvref_t<decltype(role)>>)
            return;
        std::string part;
        role.output(part, machine);
        if (!part.empty())
            all += (all.empty() ? "" : ", ") + part;
    };
    (append(roles), ...);
}

template <class Result>
void appendResult(std::string& text, Machine& machine, Result result) {
    if constexpr (std::is_same_v<Result, winsock::HostEntry*>)
        appendHost(text, result);
    else if constexpr (std::is_pointer_v<Result>)
        appendHandle(text, machine, asNumber(result));
    else
        Value<Result>{result}.input(text, machine);
}

// The slot of a handle or block that the call returns.
template <class Result>
std::size_t slotOfResult(Recording& recording, Machine& machine, Result result) {
    if constexpr (std::is_pointer_v<Result>)
        if (machine.isOpen(asNumber(result)))
            return recording.newSlot(asNumber(result));
    return Recording::kNoSlot;
}

// What a kept parameter is for the real function.
template <class Kept>
auto realArgumentOf(Kept& kept, ReplayState& state) {
    if constexpr (requires { kept.realArgument(state); })
        return kept.realArgument(state);
    else
        return kept.argument(state);
}

// `real` is the function that answered in the machine's place, or null.
template <auto Entry, class... Kept>
auto callAgain([[maybe_unused]] const void* real, ReplayState& state, Kept&... kept) {
#ifdef _WIN32
    if (real != nullptr) {
        using Real = decltype(Entry(kept.argument(state)...)) (*)(decltype(realArgumentOf(kept, state))...);
        return asPointer<Real>(asNumber(real))(realArgumentOf(kept, state)...);
    }
#endif
    return Entry(kept.argument(state)...);
}

template <auto Entry, class KeptTuple>
void makeAgain(const void* real, KeptTuple& kept, std::size_t slot, ReplayState& state) {
    std::apply(
        [&](auto&... one) {
            using Result = decltype(Entry(one.argument(state)...));
            if constexpr (std::is_void_v<Result>) {
                callAgain<Entry>(real, state, one...);
            } else {
                [[maybe_unused]] const Result result = callAgain<Entry>(real, state, one...);
                if constexpr (std::is_pointer_v<Result>)
                    if (slot != Recording::kNoSlot)
                        state.values[slot] = asNumber(result);
            }
            (one.done(state), ...);
        },
        kept);
}

template <auto Entry, class Result, class KeptTuple>
void addToRecording(Machine& machine, const void* real, KeptTuple&& kept, std::optional<Result> result) {
    Recording& recording = *machine.recording();
    std::apply([&](auto&... one) { (one.finish(recording, machine), ...); }, kept);
    const std::size_t slot = result ? slotOfResult(recording, machine, *result) : Recording::kNoSlot;
    recording.add([real, kept = std::forward<KeptTuple>(kept), slot](ReplayState& state) mutable {
        makeAgain<Entry>(real, kept, slot, state);
    });
}

// What a call without a result gives.
struct NoResult {};

template <class Role>
Fact factOf(const Role& role, [[maybe_unused]] bool succeeded) {
    if constexpr (requires { role.fact(succeeded); })
        return role.fact(succeeded || kTellsAlways<Role>);
    else
        return {};
}

template <class Result>
Fact factOfResult(Result result) {
    if constexpr (std::is_pointer_v<Result>)
        return std::uint64_t{asNumber(result)};
    else
        return static_cast<std::uint64_t>(result);
}

// What the first handle that came in stands for.
template <class... Roles>
std::string subjectOf([[maybe_unused]] Machine& machine, const Roles&... roles) {
    std::string subject;
    [[maybe_unused]] bool found = false;
    [[maybe_unused]] const auto look = [&](const auto& role) {
        if constexpr (requires { role.handle(); })
            if (!std::exchange(found, true))
                subject = machine.describe(role.handle());
    };
    (look(roles), ...);
    return subject;
}

// Notes what a call held when it was over; `error` is what it set.
template <class Result, class... Roles>
void noteFacts(ObservedCall& call, const Failure& failure, bool fails, const Result& result, std::uint32_t error,
               const Roles&... roles) {
    call.succeeded = !fails;
    call.error = error;
    if constexpr (!std::is_same_v<Result, NoResult>) {
        call.succeeded = succeeded(failure, result);
        call.result = factOfResult(result);
        if (!call.succeeded && failure.how == Failure::How::ReturnsCode)
            call.error = static_cast<std::uint32_t>(numberOf(call.result));
    }
    call.parameters.reserve(sizeof...(roles));
    (call.parameters.emplace_back(factOf(roles, call.succeeded)), ...);
}

// Notes the answer for whoever reads it.
template <class Result, class... Roles>
void noteTexts(Machine& machine, ObservedCall& call, [[maybe_unused]] const Result& result, const Roles&... roles) {
    if constexpr (!std::is_same_v<Result, NoResult>)
        appendResult(call.answer, machine, result);
    joinOutputs(call.answer, machine, call.succeeded, roles...);
}

// A watched call; `answer` makes it or fails it. Entry is the answer's own function, for replay.
template <auto Entry, class Answer, class... Roles>
auto watchCall(Machine& machine, const char* name, const Failure& failure, bool fails, Answer&& answer,
               const Roles&... roles) {
    using Result = decltype(answer());
    LastErrorKeeper lastError(machine.relay());
    const bool isTold = machine.keepsLog() || machine.observer() != nullptr || machine.relay() != nullptr;
    const bool hasTexts = machine.keepsLog() || (machine.observer() != nullptr && machine.observer()->readsTexts());
    ObservedCall call{.name = name, .arguments = {}, .answer = {}, .subject = {}};
    if (hasTexts)
        call.arguments = joinInputs(machine, roles...);
    if (isTold)
        call.subject = subjectOf(machine, roles...);
    if (machine.observer() != nullptr)
        machine.observer()->begins(call);
    using KeptTuple = std::tuple<decltype(roles.keep(std::declval<Recording&>()))...>;
    std::optional<KeptTuple> kept;
    if (machine.recording() != nullptr)
        kept.emplace(roles.keep(*machine.recording())...);

    lastError.begin(failure.how != Failure::How::Never);
    const auto result = [&] {
        if constexpr (std::is_void_v<Result>) {
            answer();
            return NoResult{};
        } else {
            return answer();
        }
    }();
    lastError.take();

    if (isTold)
        noteFacts(call, failure, fails, result, lastError.error(machine), roles...);
    if (machine.relay() != nullptr)
        machine.relay()->learn(call);
    if (hasTexts)
        noteTexts(machine, call, result, roles...);
    if (machine.keepsLog())
        machine.addToLog({call.name, call.arguments, call.answer, fails});
    if (machine.observer() != nullptr)
        machine.observer()->ends(call);
    const void* real = machine.relay() != nullptr ? machine.relay()->function(name) : nullptr;
    if constexpr (std::is_void_v<Result>) {
        if (kept)
            addToRecording<Entry>(machine, real, std::move(*kept), std::optional<int>());
    } else {
        if (kept)
            addToRecording<Entry>(machine, real, std::move(*kept), std::optional<Result>(result));
        return result;
    }
}

template <class Role>
auto realOf(const Role& role) -> decltype(role.raw()) {
    if constexpr (requires { role.real(); })
        return role.real();
    else
        return role.raw();
}

// Makes the call of who answers in the machine's place.
template <auto Entry, class Result, class... Roles>
Result passOn(Relay& relay, [[maybe_unused]] const char* name, const Roles&... roles) {
#ifdef _WIN32
    if (relay.behind() == nullptr) {
        using Real = Result (*)(decltype(roles.raw())...);
        return asPointer<Real>(asNumber(relay.function(name)))(realOf(roles)...);
    }
#endif
    const Machine::Scope scope(*relay.behind());
    return static_cast<Result>(Entry(roles.raw()...));
}

// Changes the station for a call that an experiment chose.
class ChangedStation {
  public:
    ChangedStation(const Machine& machine, const char* name)
        : m_machine(machine.isCallToChange(name) ? &machine : nullptr) {
        if (m_machine != nullptr) [[unlikely]]
            m_machine->toggleStation();
    }
    ChangedStation(const ChangedStation&) = delete;
    ChangedStation& operator=(const ChangedStation&) = delete;
    ~ChangedStation() {
        if (m_machine != nullptr) [[unlikely]]
            m_machine->toggleStation();
    }

  private:
    const Machine* m_machine;
};

// Makes a call, and notes its question where it is one.
template <class Make, class... Roles>
auto noteQuestion(Machine& machine, const char* name, const Failure& failure, bool fails, const Make& make,
                  const Roles&... roles) {
    AskedQuestions* questions = machine.questionsWith(name);
    if (questions == nullptr)
        return make();
    Identity question;
    question.add(std::string_view(name));
    [[maybe_unused]] const auto add = [&](const auto& role) {
        if constexpr (requires { role.identify(question, machine); })
            role.identify(question, machine);
    };
    (add(roles), ...);
    const auto note = [&](const auto& result) {
        ObservedCall call{.name = name, .arguments = {}, .answer = {}, .subject = subjectOf(machine, roles...)};
        noteFacts(call, failure, fails, result, machine.errorOfCall(), roles...);
        questions->tell(std::move(call));
    };
    if constexpr (std::is_void_v<decltype(make())>) {
        make();
        if (questions->add(question))
            note(NoResult{});
    } else {
        const auto result = make();
        question.add(std::uint64_t{succeeded(failure, result)});
        if (questions->add(question))
            note(result);
        return result;
    }
}

// A failure that leaves more behind than its code.
template <class Effect>
struct FailureWith {
    Failure failure;
    Effect effect;
};
template <class Effect>
FailureWith(Failure, Effect) -> FailureWith<Effect>;

// Makes one call on the current machine. `answer` takes the machine and gives the call's result.
template <auto Entry, class Effect, class Answer, class... Roles>
auto makeCall(const char* name, FailureWith<Effect> with, Answer&& answer, const Roles&... roles) {
    Machine& machine = Machine::current();
    using Result = decltype(answer(machine));
    Failure& failure = with.failure;
    const bool fails = machine.countCall(name, failure);
    const auto make = [&]() -> Result {
        if (!fails) {
            const ChangedStation change(machine, name);
            return answer(machine);
        }
        with.effect();
        return failedResult<Result>(machine, failure);
    };
    if (!machine.isWatched()) [[likely]]
        return make();
    const auto outcome = [&]() -> Result { return noteQuestion(machine, name, failure, fails, make, roles...); };
    if (!machine.isTold())
        return outcome();
    if (Relay* relay = machine.relay())
        return watchCall<Entry>(
            machine, name, failure, false, [&] { return passOn<Entry, Result>(*relay, name, roles...); }, roles...);
    return watchCall<Entry>(machine, name, failure, fails, outcome, roles...);
}

template <auto Entry, class Answer, class... Roles>
auto makeCall(const char* name, Failure failure, Answer&& answer, const Roles&... roles) {
    return makeCall<Entry>(name, FailureWith{failure, [] {}}, std::forward<Answer>(answer), roles...);
}

}  // namespace simwin
