// A described station on which everything that can fail fails once.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "simwin/text/CodePage.h"
#include "tests/faults/FaultedStation.h"
#include "tests/faults/TextLists.h"
#include "tests/stations/ExpectedStation.h"

namespace kvtest {

class FaultsTest : public ::testing::TestWithParam<std::string> {
  protected:
    FaultsTest();
    void SetUp() override;

    // After all stations, which are not all where tests were chosen: each rule must have been needed.
    static void TearDownTestSuite();
    static inline Texts rulesNeeded;
    static inline Texts stationsTried;  // whose calls have failed

    // The lines that the run prints are left out: thousands of runs print thousands of them.
    FaultedRun Run(Fault fault) const;

    // Runs once for each number from 1 to `count`. The test fails with the complaints of the first few runs that have
    // any.
    using Complain = std::function<std::vector<std::string>(const FaultedRun& run)>;
    void FailEach(Fault::Kind kind, std::uint64_t count, const Complain& complain) const;

    const std::shared_ptr<const simwin::Station> station;
    const simwin::CodePageScope codePage;  // the station's: what may be found is told in its texts
    const ExpectedStation expected;
    FaultedRun undisturbed;
};

}  // namespace kvtest
