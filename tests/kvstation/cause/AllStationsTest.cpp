// What experiments over all described stations with the real library tell.
#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "kvstation/calls/CallRows.h"
#include "kvstation/cause/FieldSources.h"
#include "kvstation/platform/Files.h"
#include "kvstation/report/LayoutTable.h"
#include "tests/kvstation/cause/DescribedCauses.h"

namespace kvtest {
namespace {

using kvstation::Cause;
using kvstation::FieldCauses;

std::vector<std::vector<FieldCauses>> allStations() {
    std::vector<std::vector<FieldCauses>> stations;
    for (const std::string& name : stationNames())
        stations.push_back(causesOfDescribed(name));
    return stations;
}

TEST(AllStations, HaveTheSourcesOfTheRecordsDocument) {
    EXPECT_EQ(kvstation::readFile(KV_RECORD_DOCUMENT, 1024 * 1024),
              kvstation::layoutMarkdown(kvstation::sourcesIn(allStations())))
        << "make it anew: ./kv docs";
}

TEST(AllStations, AreReadFromTheirFolders) {
    EXPECT_EQ(kvstation::sourcesIn(kvstation::causesOver({stationFolder("nt4-mips-workstation")})),
              kvstation::sourcesIn({causesOfDescribed("nt4-mips-workstation")}));
}

// Questions that the module asks without the answer coming into a field: a process's number opens that process whatever
// it is; what the other calls tell is dropped again or written over.
constexpr std::string_view kOfNoField[] = {"GetCurrentProcessId", "KVGetDomainName", "ZRTSDomainName", "_access",
                                           "gethostbyaddr"};
// Asked by Windows 3.1 with Win32s alone, which no station describes.
constexpr std::string_view kOfWin32s[] = {"GetPrivateProfileStringA"};

TEST(AllStations, HangOnEveryRowOfTheQuestionsButThoseOfNoField) {
    std::set<std::string> expected;
    for (const kvstation::CallRow* row : kvstation::questions())
        if (std::ranges::find(kOfNoField, row->call) == std::end(kOfNoField) &&
            std::ranges::find(kOfWin32s, row->call) == std::end(kOfWin32s))
            expected.emplace(row->call);
    std::set<std::string> found;
    for (const std::vector<FieldCauses>& station : allStations())
        for (const FieldCauses& field : station)
            for (const Cause& cause : field.causes)
                found.insert(cause.call);
    EXPECT_EQ(found, expected);
}

}  // namespace
}  // namespace kvtest
