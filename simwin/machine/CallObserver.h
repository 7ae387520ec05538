// Who wants to know each call while it is made: what was asked and answered, as people read it and as values.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace simwin {

// What a parameter or a result held when its call was over: nothing, a number (a handle's or pointer's too), or bytes.
using Fact = std::variant<std::monostate, std::uint64_t, std::string>;

struct ObservedCall {
    std::string name;
    std::string arguments;  // as in LoggedCall, but handles by what they stand for alone
    std::string answer;
    std::string subject;  // what the first handle stands for, such as a key's full path
    bool succeeded = false;
    std::uint32_t error = 0;  // a failed call's: what it returned, where it returns its error, else the last error
    std::vector<Fact> parameters{};  // in the order of the function's; what a failed call left unset is nothing
    Fact result{};
};

inline std::uint64_t numberOf(const Fact& fact) {
    const auto* number = std::get_if<std::uint64_t>(&fact);
    return number != nullptr ? *number : 0;
}

inline std::string_view textOf(const Fact& fact) {
    const auto* text = std::get_if<std::string>(&fact);
    return text != nullptr ? std::string_view(*text) : std::string_view();
}

// The full path of the key that a call of RegOpenKeyA or RegOpenKeyExA asks for.
inline std::string openedKey(const ObservedCall& call) {
    const std::string_view subKey = textOf(call.parameters[1]);
    return call.subject + (subKey.empty() ? "" : "\\") + std::string(subKey);
}

class CallObserver {
  public:
    virtual ~CallObserver() = default;
    // Whether arguments and answer are told as texts too, which takes most of the time that telling takes.
    virtual bool readsTexts() const { return true; }
    // Before the call is made: name, arguments and subject are known.
    virtual void begins(const ObservedCall&) {}
    // After it. What its pointers point to still stands.
    virtual void ends(const ObservedCall&) {}
};

}  // namespace simwin
