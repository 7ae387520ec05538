// A fixture for tests of the hardware: short ways to describe a station's registry, and the check that every test ends
// with nothing open and no text of the module's left.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "kvcstat/hardware/HardwareInformation.h"
#include "kvcstat/os/OSInformation.h"
#include "tests/kvcstat/MachineTest.h"

namespace kvtest {

// Below HKEY_LOCAL_MACHINE.
inline constexpr char kPrinters[] = "SYSTEM\\CurrentControlSet\\Control\\Print\\Printers";
inline constexpr char kSystem[] = "HARDWARE\\DESCRIPTION\\System";

inline constexpr std::uint64_t kMB = 1048576;

// The hardware collector with the OS collector that it asks. To be made after the machine's start and gone before its
// end, as in the module's run.
struct Hardware {
    COSInformation os;
    CHardwareInformation collector{&os};

    CHardwareInformation* operator->() { return &collector; }
};

class HardwareTest : public MachineTest {
  protected:
    void TearDown() override {
        if (machine == nullptr)
            return;
        ExpectEverythingClosed();
        EXPECT_EQ(machine->openHeapBlocks(), 0u);
    }

    void DescribePlatform(std::uint32_t platformId) {
        station.version = simwin::WindowsVersion{platformId, 4, platformId == 1 ? 10u : 0u, 1381, "", false};
    }
    void DescribeWindows98() { DescribePlatform(1); }
    void DescribeWindowsNT() { DescribePlatform(2); }
    void DescribeMetaFrameSession() {
        station.environment.push_back({"CLIENTNAME", "THIN07"});
        SetText("SYSTEM\\CurrentControlSet\\Control\\Citrix", "ProductName", "Citrix MetaFrame XP");
    }

    // Paths below HKEY_LOCAL_MACHINE.
    static std::string MachinePath(const std::string& path) { return "HKEY_LOCAL_MACHINE\\" + path; }
    void SetText(const std::string& path, const char* name, const std::string& text) {
        station.registry.set(MachinePath(path), simwin::textValue(name, text));
    }
    void CreateKey(const std::string& path) { station.registry.create(MachinePath(path)); }
    void DenyKey(const std::string& path) {
        CreateKey(path);
        station.deniedKeys.push_back(MachinePath(path));
    }

    // The calls of these names that the program made, in order; the machine must keep its log.
    std::vector<std::string> CallsAmong(const std::vector<std::string>& names) const {
        std::vector<std::string> calls;
        for (const simwin::LoggedCall& call : machine->log()) {
            if (std::find(names.begin(), names.end(), call.name) != names.end())
                calls.push_back(call.name);
        }
        return calls;
    }
    std::size_t CountCalls(const std::string& name) const { return CallsAmong({name}).size(); }
};

// What a registry text of 64 KB reads as.
inline std::string LongText() {
    return std::string(65536, 'x');
}

}  // namespace kvtest
