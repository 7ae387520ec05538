#include <iterator>

#include "tests/conformance/Suite.h"

namespace conformance {

// Each stands in the file of its name.
void testRegistryKeys(Suite& suite);
void testRegistryValues(Suite& suite);
void testVersions(Suite& suite);
void testLibraries(Suite& suite);
void testMemory(Suite& suite);
void testWideText(Suite& suite);
void testFormatting(Suite& suite);
void testCRuntime(Suite& suite);
void testFiles(Suite& suite);
void testDrives(Suite& suite);
void testNames(Suite& suite);
void testEnvironment(Suite& suite);
void testProcesses(Suite& suite);
void testHardware(Suite& suite);
void testNetwork(Suite& suite);
void testSockets(Suite& suite);
void testCompanions(Suite& suite);

const Group kGroups[] = {
    {"RegistryKeys", testRegistryKeys},
    {"RegistryValues", testRegistryValues},
    {"Versions", testVersions},
    {"Libraries", testLibraries},
    {"Memory", testMemory},
    {"WideText", testWideText},
    {"Formatting", testFormatting},
    {"CRuntime", testCRuntime},
    {"Files", testFiles},
    {"Drives", testDrives},
    {"Names", testNames},
    {"Environment", testEnvironment},
    {"Processes", testProcesses},
    {"Hardware", testHardware},
    {"Network", testNetwork},
    {"Sockets", testSockets},
    {"Companions", testCompanions},
};
const std::size_t kGroupCount = std::size(kGroups);

}  // namespace conformance
