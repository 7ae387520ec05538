// The roles of a call's parameters: how each is told in the log, and how it is kept for replay. What a call reads is
// copied, what it writes gets room of its own.
//
// A role has: raw(), the parameter as it came; Kept keep(Recording&), called before the answer; input(text, machine)
// and output(text, machine) for the log, the latter only after success. Kept has: argument(state), asked for at each
// replay; finish(recording, machine), once after the answer; done(state), after each replay; and may have
// realArgument(state), where the real function takes another one. A role may have: fact(succeeded), its value after the
// call; kTellsAlways, where a failed call has an output too; handle(), the number of a handle that came in;
// identify(question, machine), where it is a part of what is asked; real(), where the real function takes another one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "framework/Windows.h"
#include "simwin/machine/CallObserver.h"
#include "simwin/machine/CallText.h"
#include "simwin/machine/Machine.h"
#include "simwin/machine/Recording.h"

namespace simwin {

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
    T raw() const { return value; }
    Fact fact(bool) const { return static_cast<std::uint64_t>(value); }
    void identify(Identity& question, Machine&) const { question.add(static_cast<std::uint64_t>(value)); }
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
    const char* raw() const { return value; }
    Fact fact(bool) const { return value != nullptr ? Fact(std::string(value)) : Fact(); }
    void identify(Identity& question, Machine&) const { question.add(value != nullptr ? value : std::string_view()); }
    Kept keep(Recording&) const { return Kept(value); }
    void input(std::string& text, Machine&) const {
        if (value == nullptr)
            text += "null";
        else
            appendQuoted(text, value);
    }
    void output(std::string&, Machine&) const {}
};

// The whole text that a call makes of a format and its values. The real function gets it as a format without values.
struct FormattedText : Text {
    mutable std::string format{};

    struct Kept : Text::Kept {
        Kept(const char* v, std::string f) : Text::Kept(v), format(std::move(f)) {}
        std::string format;
        const char* realArgument(ReplayState&) const { return format.c_str(); }
    };
    Kept keep(Recording&) const { return Kept(value, real()); }
    const char* real() const {
        format.clear();
        for (const char* place = value; *place != '\0'; ++place)
            format.append(*place == '%' ? 2 : 1, *place);
        return format.c_str();
    }
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
    H raw() const { return value; }
    Fact fact(bool) const { return std::uint64_t{asNumber(value)}; }
    std::uintptr_t handle() const { return asNumber(value); }
    void identify(Identity& question, Machine& machine) const { question.add(machine.identify(asNumber(value))); }
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
    H* raw() const { return place; }
    Fact fact(bool succeeded) const {
        return succeeded && place != nullptr ? Fact(std::uint64_t{asNumber(*place)}) : Fact();
    }
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
    T* raw() const { return place; }
    Fact fact(bool) const { return place != nullptr ? Fact(static_cast<std::uint64_t>(*place)) : Fact(); }
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
    T* raw() const { return place; }
    Fact fact(bool succeeded) const {
        return succeeded && place != nullptr ? Fact(std::string(reinterpret_cast<const char*>(place), sizeof *place))
                                             : Fact();
    }
    Kept keep(Recording&) const { return Kept(place); }
    void input(std::string&, Machine&) const {}
    void output(std::string&, Machine&) const {}
};
template <class T>
Structure(T*) -> Structure<T>;

// Room of `size` bytes for a text, which ends with a NUL where it is shorter.
struct TextBuffer {
    char* buffer;
    std::size_t size;

    struct Kept : KeptNothingOfIt {
        Kept(bool null, std::size_t s) : isNull(null), scratch(std::min(s, kLongestCopy)) {}
        bool isNull;
        std::vector<char> scratch;
        char* argument(ReplayState&) { return isNull ? nullptr : scratch.data(); }
    };
    char* raw() const { return buffer; }
    Fact fact(bool succeeded) const { return succeeded && isRoom() ? Fact(std::string(content())) : Fact(); }
    Kept keep(Recording&) const { return Kept(buffer == nullptr, size); }
    void input(std::string&, Machine&) const {}
    void output(std::string& text, Machine&) const {
        if (isRoom())
            appendQuoted(text, content());
    }

    bool isRoom() const { return buffer != nullptr && size != 0; }
    std::string_view content() const { return {buffer, strnlen(buffer, size)}; }
};

// The same where the caller reads the room whether the call succeeded or not.
struct TextBufferReadAlways : TextBuffer {
    static constexpr bool kTellsAlways = true;
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
    Pointer raw() const { return buffer; }
    Fact fact(bool succeeded) const { return succeeded && buffer != nullptr ? Fact(std::string(content())) : Fact(); }
    Kept keep(Recording&) const { return Kept(buffer == nullptr, size); }
    void input(std::string&, Machine&) const {}
    void output(std::string& text, Machine&) const {
        if (buffer != nullptr && used != nullptr)
            appendBytes(text, content());
    }

    std::string_view content() const {
        return {reinterpret_cast<const char*>(buffer), used != nullptr ? std::min<std::size_t>(*used, size) : size};
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
    Pointer raw() const { return data; }
    Fact fact(bool) const {
        return data != nullptr ? Fact(std::string(reinterpret_cast<const char*>(data), size)) : Fact();
    }
    void identify(Identity& question, Machine&) const { question.add(content()); }
    Kept keep(Recording&) const { return Kept(data, size); }
    void input(std::string& text, Machine&) const {
        if (data == nullptr)
            text += "null";
        else
            appendBytes(text, content());
    }
    void output(std::string&, Machine&) const {}

    std::string_view content() const {
        return data != nullptr ? std::string_view(reinterpret_cast<const char*>(data), size) : std::string_view();
    }
};
template <class Pointer>
Bytes(Pointer, std::size_t) -> Bytes<Pointer>;

}  // namespace simwin
