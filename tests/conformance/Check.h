// The suite's own small core: assertions of one function, what the report says of each, and the counts at its end. It
// needs no test framework, so that the program runs on any Windows as it is.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace conformance {

// What answers the calls.
enum class Platform : std::uint8_t { Windows, Wine, Simulated };

struct FunctionCounts {
    std::string function;
    unsigned asserted = 0;  // those that were made; the skipped ones are not
    unsigned held = 0;
    unsigned differs = 0;  // made under Wine, which is known not to do as Windows
    unsigned skipped = 0;
};

// One line for each assertion on standard output, in an order and words that are the same in every run:
//
//     PASS RegOpenKeyA: a path in another letter case: result
//     FAIL RegOpenKeyA: a path in another letter case: result: expected 0, found 2
//     WINE _mbsupr: letters of the code page: expected "\xC4", found "\xE4" (Wine changes ASCII letters alone of those
//     with one byte) SKIP WFQuerySessionInformationA: wfapi64.dll is not on this computer
class Report {
  public:
    explicit Report(Platform platform) : m_platform(platform) {}

    // Without lines; only the counts are kept.
    void silence() { m_isSilent = true; }

    Platform platform() const { return m_platform; }
    const std::vector<FunctionCounts>& counts() const { return m_counts; }
    bool hasFailed() const { return m_failed != 0; }
    // The closing line.
    std::string summary() const;

    // The rest is for Check.

    // `wineReason` is null unless Wine is known to differ.
    void tell(std::string_view function, std::string_view what, bool holds, const std::string& expected,
              const std::string& found, const char* wineReason);
    void skip(std::string_view function, std::string_view reason);

  private:
    FunctionCounts& of(std::string_view function);
    void print(const std::string& line) const;

    Platform m_platform;
    bool m_isSilent = false;
    unsigned m_failed = 0;
    std::vector<FunctionCounts> m_counts;
};

// The assertions of one function. An assertion that does not hold is told, and the next one follows.
class Check {
  public:
    Check(Report& report, const char* function) : m_report(report), m_function(function) {}

    // The assertions of the object that this gives hold on Windows and not under Wine, for the reason stated. One that
    // holds under Wine all the same fails: then the mark has to go.
    Check exceptUnderWine(const char* reason) const {
        Check marked = *this;
        marked.m_wineReason = reason;
        return marked;
    }

    // Numbers of any type, handles aside; both become 64 bits wide by their own signs.
    template <class Found, class Expected>
    void equal(std::string_view what, Found found, Expected expected) const {
        equalNumbers(what, static_cast<std::int64_t>(found), static_cast<std::int64_t>(expected));
    }
    void text(std::string_view what, std::string_view found, std::string_view expected) const;
    void holds(std::string_view what, bool found) const;
    void skip(std::string_view reason) const { m_report.skip(m_function, reason); }

  private:
    void equalNumbers(std::string_view what, std::int64_t found, std::int64_t expected) const;

    Report& m_report;
    const char* m_function;
    const char* m_wineReason = nullptr;
};

}  // namespace conformance
