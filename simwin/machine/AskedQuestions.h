// Which questions the calls of many runs have asked, and the calls that asked them first.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "simwin/machine/CallObserver.h"

namespace simwin {

// Of all that makes something what it is, in the order of its parts.
class Identity {
  public:
    void add(std::string_view bytes) {
        add(std::uint64_t{bytes.size()});
        add(std::uint64_t{std::hash<std::string_view>()(bytes)});
    }
    void add(std::uint64_t number) {
        constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
        m_value = (m_value ^ number) * kSpread;
        m_value ^= m_value >> 32;
    }
    std::uint64_t value() const { return m_value; }

  private:
    std::uint64_t m_value = 0;
};

// Of stations of one tree of keys, whose numbers tell which key is asked.
class AskedQuestions {
  public:
    // `counts` tells a call that is a question: asked with the very pointer each time that the call is made.
    explicit AskedQuestions(bool (*counts)(const char* call)) : m_counts(counts) {}

    bool isQuestion(const char* call) const { return m_counts(call); }
    // False when it was asked before.
    bool add(const Identity& question) {
        m_way.add(question.value());
        return m_known.insert(question.value()).second;
    }
    // Of a new one, without texts for people.
    void tell(ObservedCall call) { m_new.push_back(std::move(call)); }
    // Those that were told since this was called last.
    std::vector<ObservedCall> takeNew() { return std::exchange(m_new, {}); }
    // The same for the same questions in the same order since this was called last.
    std::uint64_t takeWay() { return std::exchange(m_way, {}).value(); }

  private:
    bool (*m_counts)(const char* call);
    std::unordered_set<std::uint64_t> m_known;
    std::vector<ObservedCall> m_new;
    Identity m_way;
};

}  // namespace simwin
