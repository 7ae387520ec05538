#include "tests/conformance/Check.h"

#include <algorithm>
#include <cstdio>

namespace conformance {
namespace {

constexpr std::size_t kLongestTold = 80;

// In quotes, with what is not printable ASCII in hexadecimal; a long text is told by its head and its length.
std::string quoted(std::string_view text) {
    std::string all = "\"";
    for (const char character : text.substr(0, kLongestTold)) {
        if (character == '"' || character == '\\') {
            all += '\\';
            all += character;
        } else if (character >= ' ' && character <= '~') {
            all += character;
        } else {
            char digits[8] = {};
            std::snprintf(digits, sizeof digits, "\\x%02X",
                          static_cast<unsigned>(static_cast<unsigned char>(character)));
            all += digits;
        }
    }
    all += '"';
    return text.size() > kLongestTold ? all + " and so on, " + std::to_string(text.size()) + " bytes" : all;
}

}  // namespace

FunctionCounts& Report::of(std::string_view function) {
    const auto found = std::find_if(m_counts.begin(), m_counts.end(),
                                    [function](const FunctionCounts& one) { return one.function == function; });
    if (found != m_counts.end())
        return *found;
    m_counts.emplace_back().function = function;
    return m_counts.back();
}

void Report::print(const std::string& line) const {
    if (m_isSilent)
        return;
    std::printf("%s\n", line.c_str());
    // A crash then shows behind which assertion it came.
    std::fflush(stdout);
}

void Report::tell(std::string_view function, std::string_view what, bool holds, const std::string& expected,
                  const std::string& found, const char* wineReason) {
    const bool isMarked = wineReason != nullptr && m_platform == Platform::Wine;
    const std::string name = std::string(function) + ": " + std::string(what);
    const std::string both = ": expected " + expected + ", found " + found;
    FunctionCounts& counts = of(function);
    ++counts.asserted;
    if (isMarked && !holds) {
        ++counts.differs;
        print("WINE " + name + both + " (" + wineReason + ")");
    } else if (isMarked) {
        ++m_failed;
        print("FAIL " + name + ": Wine does as Windows here; the mark \"" + wineReason + "\" has to go");
    } else if (holds) {
        ++counts.held;
        print("PASS " + name);
    } else {
        ++m_failed;
        print("FAIL " + name + both);
    }
}

void Report::skip(std::string_view function, std::string_view reason) {
    ++of(function).skipped;
    print("SKIP " + std::string(function) + ": " + std::string(reason));
}

std::string Report::summary() const {
    FunctionCounts all;
    for (const FunctionCounts& one : m_counts) {
        all.asserted += one.asserted;
        all.held += one.held;
        all.differs += one.differs;
        all.skipped += one.skipped;
    }
    return std::to_string(all.asserted) + " assertions: " + std::to_string(all.held) + " passed, " +
           std::to_string(m_failed) + " failed, " + std::to_string(all.differs) + " differ under Wine as known; " +
           std::to_string(all.skipped) + " skipped";
}

void Check::equalNumbers(std::string_view what, std::int64_t found, std::int64_t expected) const {
    m_report.tell(m_function, what, found == expected, std::to_string(expected), std::to_string(found), m_wineReason);
}

void Check::text(std::string_view what, std::string_view found, std::string_view expected) const {
    m_report.tell(m_function, what, found == expected, quoted(expected), quoted(found), m_wineReason);
}

void Check::holds(std::string_view what, bool found) const {
    m_report.tell(m_function, what, found, "yes", found ? "yes" : "no", m_wineReason);
}

}  // namespace conformance
