// Each call of Windows or a companion fails once, as Windows would fail it.
#include "tests/faults/FaultsTest.h"

#include <cstdio>

#include "tests/faults/FieldRules.h"

namespace kvtest {
namespace {

TEST_P(FaultsTest, EachCallThatFailsLeavesEveryFieldRightOrEmptyOrAtItsFallback) {
    const StationTexts texts(*station);
    FailEach(Fault::Kind::Call, undisturbed.calls, [&](const FaultedRun& run) {
        std::vector<std::string> lines = run.leftovers;
        const Fields fields = fieldsOf(run.record);
        Explanation explanation = explain(texts, expected.record, fields);
        for (const std::string& line : explanation.unexplainedFields)
            lines.push_back(line);
        rulesNeeded.merge(explanation.neededRules);
        if (run.record != recordBytes(fields))
            lines.push_back("bytes are written beside the fields' texts");
        if (run.failedCall.empty())
            lines.push_back("no call has failed");
        if (run.threw)
            lines.push_back("it threw");
        return lines;
    });
    stationsTried.insert(GetParam());
    std::printf("%s: each of %llu calls failed once\n", GetParam().c_str(),
                static_cast<unsigned long long>(undisturbed.calls));
}

}  // namespace
}  // namespace kvtest
