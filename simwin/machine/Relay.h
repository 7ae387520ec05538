// Where a machine's calls go that does not answer them itself: to the real functions or to another machine. Between
// the program and who answers, the machine only watches.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "simwin/machine/CallObserver.h"

namespace simwin {

class Machine;

class Relay {
  public:
    // Another machine answers. It must live as long as this relay.
    explicit Relay(Machine& behind) : m_behind(&behind) {}
    // Real functions answer: by name, those of addFunction and later those that the program looks up. Windows only.
    Relay() = default;

    void addFunction(std::string_view name, const void* address) {
        m_functions.insert_or_assign(std::string(name), address);
    }

    // The rest is for the answers.

    Machine* behind() const { return m_behind; }
    // Null when there is none.
    const void* function(std::string_view name) const;

    // Notes what a handle that the call gave stands for.
    void learn(const ObservedCall& call);
    // The words for a handle; empty when none is known.
    std::string nameOf(std::uintptr_t handle) const;

    // What the program gets for a function that it looked up and found: the watching one where there is one.
    const void* watched(std::uintptr_t library, const char* function, const void* found);

  private:
    Machine* m_behind = nullptr;
    std::map<std::string, const void*, std::less<>> m_functions;
    std::unordered_map<std::uintptr_t, std::string> m_names;
};

// The calling thread's last error, which stays as the real call left it while the watch does its own work.
class LastErrorKeeper {
  public:
    explicit LastErrorKeeper(const Relay* relay);
    LastErrorKeeper(const LastErrorKeeper&) = delete;
    LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;
    ~LastErrorKeeper() { restore(); }

    // Right before and right behind the call. One that cannot fail, such as GetLastError, finds the error that was.
    void begin(bool canFail) const;
    void take();

    // Behind the call: the error that it set, of the thread or else of the machine that answered; 0 when it set none.
    std::uint32_t error(const Machine& machine) const;

  private:
    void restore() const;

    bool m_isReal;
    [[maybe_unused]] std::uint32_t m_error = 0;  // only Windows has a thread's
    std::uint32_t m_errorOfCall = 0;
};

}  // namespace simwin
