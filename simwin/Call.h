// One platform call as every answer makes it: counted, failed on purpose, answered, and where somebody watches also
// logged and kept for replay.
//
// An answer names each of its parameters with a role that says how the parameter is told in the log and how it is
// kept: what is read is copied, what is written gets room of its own.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "framework/Windows.h"
#include "simwin/CallText.h"
#include "simwin/Machine.h"
#include "simwin/Recording.h"

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

template <class T>
std::uintptr_t asNumber(T* pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer);
}

template <class Pointer>
Pointer asPointer(std::uintptr_t number) {
    return reinterpret_cast<Pointer>(number);
}

// The most that a log or a recording copies of one buffer.
inline constexpr std::size_t kLongestCopy = 1 << 20;

// A role has: Kept keep(Recording&), called before the answer; input(text, machine) and output(text, machine) for the
// log, the latter only after success. Kept has: argument(state), made anew for each replay; finish(recording, machine)
// once after the answer; done(state) after each replay.
struct KeptNothingOfIt {
    void finish(Recording&, Machine&) {}
    void done(ReplayState&) {}
};

// A number.
template <class T>
struct Value {
    T value;

    struct Kept : KeptNothingOfIt {
        explicit Kept(T v) : value(v) {}
        T value;
        T argument(ReplayState&) const { return value; }
    };
    Kept keep(Recording&) const { return Kept(value); }
    void input(std::string& text, Machine&) const {
        if constexpr (std::is_signed_v<T>)
            appendNumber(text, static_cast<std::int64_t>(value));
        else
            appendNumber(text, static_cast<std::uint64_t>(value));
    }
    void output(std::string&, Machine&) const {}
};
template <class T>
Value(T) -> Value<T>;

// A text that is read, or null.
struct Text {
    const char* value;

    struct Kept : KeptNothingOfIt {
        explicit Kept(const char* v) {
            if (v != nullptr)
                copy = v;
        }
        std::optional<std::string> copy;
        const char* argument(ReplayState&) const { return copy ? copy->c_str() : nullptr; }
    };
    Kept keep(Recording&) const { return Kept(value); }
    void input(std::string& text, Machine&) const {
        if (value == nullptr)
            text += "null";
        else
            appendQuoted(text, value);
    }
    void output(std::string&, Machine&) const {}
};

// A handle, or a block's address, that another call gave.
template <class H>
struct Handle {
    H value;

    struct Kept : KeptNothingOfIt {
        Kept(H v, std::size_t s) : value(v), slot(s) {}
        H value;
        std::size_t slot;
        H argument(ReplayState& state) const {
            return slot == Recording::kNoSlot ? value : asPointer<H>(state.values[slot]);
        }
    };
    Kept keep(Recording& recording) const { return Kept(value, recording.slotOf(asNumber(value))); }
    void input(std::string& text, Machine& machine) const { appendHandle(text, machine, asNumber(value)); }
    void output(std::string&, Machine&) const {}
};
template <class H>
Handle(H) -> Handle<H>;

// Where a call puts a handle or a block's address.
template <class H>
struct NewHandle {
    H* place;

    struct Kept {
        H* place;
        H scratch{};
        std::size_t slot = Recording::kNoSlot;
        H* argument(ReplayState&) { return place != nullptr ? &scratch : nullptr; }
        void finish(Recording& recording, Machine& machine) {
            if (place != nullptr && machine.isOpen(asNumber(*place)))
                slot = recording.newSlot(asNumber(*place));
        }
        void done(ReplayState& state) {
            if (slot != Recording::kNoSlot)
                state.values[slot] = asNumber(scratch);
        }
    };
    Kept keep(Recording&) const { return Kept{place}; }
    void input(std::string&, Machine&) const {}
    void output(std::string& text, Machine& machine) const {
        if (place != nullptr)
            appendHandle(text, machine, asNumber(*place));
    }
};
template <class H>
NewHandle(H*) -> NewHandle<H>;

// A number that is read and written.
template <class T>
struct Number {
    T* place;

    struct Kept : KeptNothingOfIt {
        explicit Kept(T* p) : isNull(p == nullptr) {
            if (p != nullptr)
                before = *p;
        }
        bool isNull;
        T before{};
        T scratch{};
        T* argument(ReplayState&) {
            scratch = before;
            return isNull ? nullptr : &scratch;
        }
    };
    Kept keep(Recording&) const { return Kept(place); }
    void input(std::string&, Machine&) const {}
    void output(std::string& text, Machine&) const {
        if (place != nullptr)
            appendNumber(text, static_cast<std::uint64_t>(*place));
    }
};
template <class T>
Number(T*) -> Number<T>;

// A structure that is read and written; the log does not tell it.
template <class T>
struct Structure {
    T* place;

    struct Kept : KeptNothingOfIt {
        explicit Kept(T* p) : isNull(p == nullptr) {
            if (p != nullptr)
                std::memcpy(&before, p, sizeof before);
        }
        bool isNull;
        T before{};
        T scratch{};
        T* argument(ReplayState&) {
            std::memcpy(&scratch, &before, sizeof scratch);
            return isNull ? nullptr : &scratch;
        }
    };
    Kept keep(Recording&) const { return Kept(place); }
    void input(std::string&, Machine&) const {}
    void output(std::string&, Machine&) const {}
};
template <class T>
Structure(T*) -> Structure<T>;

// Room of `size` bytes for a text, which ends with a NUL or is `*length` bytes long.
struct TextBuffer {
    char* buffer;
    std::size_t size;
    const std::size_t* length = nullptr;

    struct Kept : KeptNothingOfIt {
        Kept(bool null, std::size_t s) : isNull(null), scratch(std::min(s, kLongestCopy)) {}
        bool isNull;
        std::vector<char> scratch;
        char* argument(ReplayState&) { return isNull ? nullptr : scratch.data(); }
    };
    Kept keep(Recording&) const { return Kept(buffer == nullptr, size); }
    void input(std::string&, Machine&) const {}
    void output(std::string& text, Machine&) const {
        if (buffer != nullptr && size != 0)
            appendQuoted(text, std::string_view(buffer, length != nullptr ? *length : strnlen(buffer, size)));
    }
};

// Room of `size` bytes, of which a call fills `*used` (all, when null).
template <class Pointer>
struct ByteBuffer {
    Pointer buffer;
    std::size_t size;
    const DWORD* used = nullptr;

    struct Kept : KeptNothingOfIt {
        Kept(bool null, std::size_t s) : isNull(null), scratch(std::min(s, kLongestCopy)) {}
        bool isNull;
        std::vector<char> scratch;
        Pointer argument(ReplayState&) { return isNull ? nullptr : reinterpret_cast<Pointer>(scratch.data()); }
    };
    Kept keep(Recording&) const { return Kept(buffer == nullptr, size); }
    void input(std::string&, Machine&) const {}
    void output(std::string& text, Machine&) const {
        if (buffer != nullptr && used != nullptr)
            appendBytes(text,
                        std::string_view(reinterpret_cast<const char*>(buffer), std::min<std::size_t>(*used, size)));
    }
};

// `size` bytes that are read.
template <class Pointer>
struct Bytes {
    Pointer data;
    std::size_t size;

    struct Kept : KeptNothingOfIt {
        Kept(Pointer from, std::size_t length) : isNull(from == nullptr) {
            if (from != nullptr)
                copy.assign(reinterpret_cast<const char*>(from),
                            reinterpret_cast<const char*>(from) + std::min(length, kLongestCopy));
        }
        bool isNull;
        std::vector<char> copy;
        Pointer argument(ReplayState&) { return isNull ? nullptr : reinterpret_cast<Pointer>(copy.data()); }
    };
    Kept keep(Recording&) const { return Kept(data, size); }
    void input(std::string& text, Machine&) const {
        if (data == nullptr)
            text += "null";
        else
            appendBytes(text, std::string_view(reinterpret_cast<const char*>(data), size));
    }
    void output(std::string&, Machine&) const {}
};

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

template <class... Roles>
void joinOutputs(std::string& all, Machine& machine, const Roles&... roles) {
    [[maybe_unused]] const auto append = [&](const auto& role) {
        std::string part;
        role.output(part, machine);
        if (!part.empty())
            all += (all.empty() ? "" : ", ") + part;
    };
    (append(roles), ...);
}

template <class Result>
void appendResult(std::string& text, Machine& machine, Result result) {
    if constexpr (std::is_pointer_v<Result>)
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

template <auto Entry, class KeptTuple>
void makeAgain(KeptTuple& kept, std::size_t slot, ReplayState& state) {
    std::apply(
        [&](auto&... one) {
            using Result = decltype(Entry(one.argument(state)...));
            if constexpr (std::is_void_v<Result>) {
                Entry(one.argument(state)...);
            } else {
                [[maybe_unused]] const Result result = Entry(one.argument(state)...);
                if constexpr (std::is_pointer_v<Result>)
                    if (slot != Recording::kNoSlot)
                        state.values[slot] = asNumber(result);
            }
            (one.done(state), ...);
        },
        kept);
}

template <auto Entry, class Result, class KeptTuple>
void addToRecording(Machine& machine, KeptTuple&& kept, std::optional<Result> result) {
    Recording& recording = *machine.recording();
    std::apply([&](auto&... one) { (one.finish(recording, machine), ...); }, kept);
    const std::size_t slot = result ? slotOfResult(recording, machine, *result) : Recording::kNoSlot;
    recording.add([kept = std::forward<KeptTuple>(kept), slot](ReplayState& state) mutable {
        makeAgain<Entry>(kept, slot, state);
    });
}

// A watched call; `answer` makes it or fails it. Entry is the answer's own function, for replay.
template <auto Entry, class Answer, class... Roles>
auto watchCall(Machine& machine, const char* name, const Failure& failure, bool fails, Answer&& answer,
               const Roles&... roles) {
    using Result = decltype(answer());
    const bool keepsLog = machine.keepsLog();
    LoggedCall logged{name, keepsLog ? joinInputs(machine, roles...) : std::string(), {}, fails};
    using KeptTuple = std::tuple<decltype(roles.keep(std::declval<Recording&>()))...>;
    std::optional<KeptTuple> kept;
    if (machine.recording() != nullptr)
        kept.emplace(roles.keep(*machine.recording())...);
    if constexpr (std::is_void_v<Result>) {
        answer();
        if (keepsLog) {
            if (!fails)
                joinOutputs(logged.answer, machine, roles...);
            machine.addToLog(std::move(logged));
        }
        if (kept)
            addToRecording<Entry>(machine, std::move(*kept), std::optional<int>());
    } else {
        const Result result = answer();
        if (keepsLog) {
            appendResult(logged.answer, machine, result);
            if (succeeded(failure, result))
                joinOutputs(logged.answer, machine, roles...);
            machine.addToLog(std::move(logged));
        }
        if (kept)
            addToRecording<Entry>(machine, std::move(*kept), std::optional<Result>(result));
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
    const auto outcome = [&]() -> Result {
        if (!fails)
            return answer(machine);
        with.effect();
        return failedResult<Result>(machine, failure);
    };
    if (!machine.isWatched()) [[likely]]
        return outcome();
    return watchCall<Entry>(machine, name, failure, fails, outcome, roles...);
}

template <auto Entry, class Answer, class... Roles>
auto makeCall(const char* name, Failure failure, Answer&& answer, const Roles&... roles) {
    return makeCall<Entry>(name, FailureWith{failure, [] {}}, std::forward<Answer>(answer), roles...);
}

}  // namespace simwin
