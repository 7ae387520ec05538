// What a group of tests gets, and the groups.
#pragma once

#include <cstddef>
#include <type_traits>

#include "tests/conformance/Functions.h"
#include "tests/conformance/World.h"

namespace conformance {

// What stands as the last error before each call that is looked at.
inline constexpr DWORD kUntouchedError = 0xBEEF;

template <class Result>
struct Outcome {
    Result result;
    DWORD error;
};

class Suite {
  public:
    Suite(World& its, Report& report) : world(its), m_report(report) {}

    Check of(const char* function) { return {m_report, function}; }

    // The call's result, and the last error that it left; kUntouchedError: none.
    template <class Call>
    Outcome<std::invoke_result_t<Call>> make(Call call) {
        world.setLastError(kUntouchedError);
        const auto result = call();
        return {result, GetLastError()};
    }

    World& world;

  private:
    Report& m_report;
};

struct Group {
    const char* name;
    void (*run)(Suite& suite);
};

// In the order of the report.
extern const Group kGroups[];
extern const std::size_t kGroupCount;

}  // namespace conformance
