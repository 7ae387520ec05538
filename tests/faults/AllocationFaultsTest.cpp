// Each allocation fails once: it throws, the locals are destroyed, and the next call of the same process works.
#include "tests/faults/FaultsTest.h"

#include <cstdio>

namespace kvtest {
namespace {

// The record is filled at the end: what the exception came before is as the caller had it.
bool isExpectedOrUntouched(const Fields& expected, const Fields& found) {
    for (std::size_t i = 0; i < found.size(); ++i) {
        const bool isUntouched =
            found[i].second == FieldValue(std::string()) || found[i].second == FieldValue(std::int64_t{0});
        if (!isUntouched && found[i].second != expected[i].second)
            return false;
    }
    return true;
}

TEST_P(FaultsTest, EachAllocationThatFailsThrowsAndLeavesNothingBehindAndTheNextCallWorks) {
    // A call that follows one that has published its variables finds them in its environment.
    const std::optional<std::string>& afterPublishing = undisturbed.secondRecord;
    const auto complain = [&](const FaultedRun& run) {
        std::vector<std::string> lines = run.leftovers;
        const Fields fields = fieldsOf(run.record);
        if (!run.threw)
            lines.push_back("it did not throw");
        if (run.record != recordBytes(fields) || !isExpectedOrUntouched(expected.record, fields))
            lines.push_back("the record holds what it should not");
        if (run.secondRecord != undisturbed.record && run.secondRecord != afterPublishing)
            lines.push_back("the second call gives another record");
        return lines;
    };
    FailEach(Fault::Kind::TextAllocation, undisturbed.textAllocations, complain);
    FailEach(Fault::Kind::Allocation, undisturbed.allocations, complain);
    std::printf("%s: each of %llu strings' and %llu other allocations failed once\n", GetParam().c_str(),
                static_cast<unsigned long long>(undisturbed.textAllocations),
                static_cast<unsigned long long>(undisturbed.allocations));
}

}  // namespace
}  // namespace kvtest
