// The hardware collection as a whole: the order of its steps, a second one on the same object, what it owns, and what
// stays when calls and allocations fail.
#include <new>

#include "kvcstat/hardware/VideoInformation.h"
#include "tests/kvcstat/AllocationCounter.h"
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::FailingAllocation;
using kvtest::Hardware;
using kvtest::kDevices;
using kvtest::kPrinters;
using kvtest::LiveAllocations;
using kvtest::Str;

constexpr char kProcessor[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
constexpr char kUnit[] = "HARDWARE\\DEVICEMAP\\Scsi\\Scsi Port 0\\Scsi Bus 0\\Target Id ";

class HardwareCollectionTest : public kvtest::HardwareTest {
  protected:
    // A workstation of either family with something for every step.
    void DescribeWorkstation(std::uint32_t platformId) {
        DescribePlatform(platformId);
        DescribeMachine();
        if (platformId == 1)
            DescribeRegistry9x();
        else
            DescribeRegistryNT();
    }
    void DescribeMachine() {
        station.keyboard = simwin::Keyboard{4, 0};
        station.processors = simwin::Processors{0, 1, 586, 5, 0x0204, {133}};
        station.memory = simwin::Memory{133693440, 2147352576};
        station.user.name = "jdoe";
        station.process = simwin::Process{1234, 0};
        station.profile = {{"windows", "device", "Deskjet,winspool,LPT1:"}};
        for (const std::uint32_t type : {2u, 3u, 4u, 5u, 6u})
            station.drives[static_cast<char>('A' + type)].type = type;
        station.drives['D'].label = "SYSTEM";
        station.drives['D'].fileSystem = "FAT";
        station.drives['D'].total = 2097152000;
        station.drives['D'].free = 1048576000;
    }
    void DescribeRegistryNT() {
        SetText("HARDWARE\\DESCRIPTION\\System", "Identifier", "AT/AT COMPATIBLE");
        SetText("HARDWARE\\DESCRIPTION\\System", "SystemBiosVersion", "PhoenixBIOS 4.0");
        SetText(kProcessor, "Identifier", "x86 Family 5 Model 2 Stepping 4");
        station.registry.set(MachinePath(kProcessor), simwin::dwordValue("~MHz", 133));
        for (const char* target : {"0", "1", "2"}) {
            const std::string unit = std::string(kUnit) + target + "\\Logical Unit Id 0";
            SetText(unit, "Identifier", target[0] == '2' ? "CD" : "disk");
            SetText(unit, "Type", target[0] == '2' ? "CdRomPeripheral" : "DiskPeripheral");
        }
        station.registry.set(MachinePath("SYSTEM\\CurrentControlSet\\Enum\\HTREE\\ROOT\\0"),
                             simwin::multiTextValue("AttachedComponents", {"Root\\*PNP0303\\0"}));
        SetText("SYSTEM\\CurrentControlSet\\Enum\\Root\\*PNP0303\\0", "Class", "Keyboard");
        SetText("SYSTEM\\CurrentControlSet\\Enum\\Root\\*PNP0303\\0", "DeviceDesc", "PC/AT keyboard");
        station.registry.set(kDevices, simwin::textValue("Laser", "winspool,LPT1:"));
        station.registry.set(kDevices, simwin::textValue("Deskjet", "winspool,LPT2:"));
        SetText("HARDWARE\\DEVICEMAP\\VIDEO", "\\Device\\Video0", "\\REGISTRY\\Machine\\System\\S3");
        SetText("System\\S3", "Device Description", "S3");
        SetText("System\\CurrentControlSet\\Enum\\Display\\EIZ1\\0", "DeviceDesc", "EIZO");
    }
    void DescribeRegistry9x() {
        SetText("HARDWARE\\DESCRIPTION\\System", "Identifier", "AT/AT COMPATIBLE");
        SetText("Enum\\Root\\*PNP0C01\\0000", "BIOSVersion", "4.51 PG");
        SetText("Enum\\Root\\*PNP0C01\\0000", "BIOSDate", "07/15/98");
        SetText("Enum\\Root\\*PNP0C01\\0000", "MachineType", "IBM PC/AT");
        SetText("Enum\\Root\\*PNP0303\\0000", "Class", "Keyboard");
        SetText("Enum\\Root\\*PNP0303\\0000", "DeviceDesc", "101/102-key keyboard");
        for (const char* instance : {"0", "1"}) {
            SetText(std::string("Enum\\ESDI\\DISK\\") + instance, "DeviceDesc", "disk");
            SetText(std::string("Enum\\ESDI\\DISK\\") + instance, "Class", "DiskDrive");
        }
        SetText(std::string(kPrinters) + "\\Laser", "Port", "LPT1:");
        SetText(std::string(kPrinters) + "\\Deskjet", "Port", "LPT2:");
        SetText("Enum\\PCI\\VEN_1002\\0000", "Class", "Display");
        SetText("Enum\\PCI\\VEN_1002\\0000", "DeviceDesc", "ATI");
        SetText("Enum\\Monitor\\Default_Monitor\\0001", "DeviceDesc", "monitor");
    }

    // What the run does with the two collectors.
    static void Collect() {
        Hardware hardware;
        hardware->m_cUserName = "JDOE";
        hardware->Collect();
        CVideoInformation video;
        video.GetVideoInformation();
    }
    void Stop() {
        scope.reset();
        machine.reset();
    }
};

TEST_F(HardwareCollectionTest, StepsRunInTheirOrder) {
    DescribeWorkstation(2);
    DescribeMetaFrameSession();
    Start().keepLog(true);
    Hardware hardware;
    hardware->Collect();
    std::vector<std::string> steps;
    const auto note = [&steps](const char* step) {
        if (steps.empty() || steps.back() != step)
            steps.emplace_back(step);
    };
    for (const simwin::LoggedCall& call : machine->log()) {
        if (call.name == "GetSystemInfo")
            note("processor");
        else if (call.name == "CallNtPowerInformation")
            note("power");
        else if (call.name == "GlobalMemoryStatus")
            note("memory");
        else if (call.name == "GetDriveTypeA")
            note("drives");
        else if (call.name == "GetOEMCP")
            note("keyboard");
        else if (call.arguments.find("SystemBiosDate") != std::string::npos)
            note("BIOS");
        else if (call.arguments.find("RegisteredOwner") != std::string::npos)
            note("owner");
        else if (call.arguments.find("DEVICEMAP") != std::string::npos && call.name == "RegOpenKeyA")
            note("devices");
        else if (call.name == "RegEnumValueA")
            note("printers");
    }
    // Nobody opens an owner's key that is not there.
    EXPECT_THAT(steps, ::testing::ElementsAre("processor", "power", "BIOS", "memory", "devices", "drives", "keyboard",
                                              "printers"));
    EXPECT_STREQ(hardware->m_cProcessorName, "Intel Pentium(5.0)") << "the fallback, behind all steps";
    EXPECT_STREQ(hardware->m_cDiskDevices, "2 disk") << "the classification";
}

TEST_F(HardwareCollectionTest, NumbersAreZeroBeforeTheCollection) {
    Hardware hardware;
    for (const DWORD number :
         {DWORD{hardware->m_wProcessorArchitecture}, hardware->m_dwNumberOfProcessors, hardware->m_dwProcessorType,
          hardware->m_dwProcessorLevel, DWORD{hardware->m_wProcessorRevision}, hardware->m_nTotalMemoryMB,
          hardware->m_nVirtualMemoryMB, hardware->m_nRemovableDrives, hardware->m_nFixedDrives,
          hardware->m_nRemoteDrives, hardware->m_nCDRomDrives, hardware->m_nRamDisks, hardware->m_nOEMCodePage,
          static_cast<DWORD>(hardware->m_nKeyboardType), static_cast<DWORD>(hardware->m_nKeyboardSubType),
          hardware->m_nCurrentMhz, CDeviceInformation().m_nCount})
        EXPECT_EQ(number, 0u);
}

TEST_F(HardwareCollectionTest, StatusIsTheClassificationsWhateverTheOthersAnswer) {
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->EnumerateDevices(), 0);
    EXPECT_EQ(hardware->GetPrinters(), -1);
    EXPECT_EQ(hardware->Collect(), 0);
}

TEST_F(HardwareCollectionTest, SecondStepOfTheProductsRunDoesNothing) {
    DescribeWorkstation(2);
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->CollectSecond(), 0);
    EXPECT_EQ(machine->calls(), 0u);
}

TEST_F(HardwareCollectionTest, SecondCollectionStartsListsAndCountersAnewAndAppendsToTheTexts) {
    DescribeWorkstation(2);
    SetText(kProcessor, "ProcessorNameString", "Pentium");
    Start();
    Hardware hardware;
    hardware->Collect();
    hardware->Collect();
    for (const CObList* drives : {&hardware->m_RemovableDrives, &hardware->m_FixedDrives, &hardware->m_RemoteDrives,
                                  &hardware->m_CDRomDrives, &hardware->m_RamDisks})
        EXPECT_EQ(drives->GetCount(), 1);
    for (const DWORD count : {hardware->m_nRemovableDrives, hardware->m_nFixedDrives, hardware->m_nRemoteDrives,
                              hardware->m_nCDRomDrives, hardware->m_nRamDisks})
        EXPECT_EQ(count, 1u);
    EXPECT_EQ(hardware->m_Printers.GetCount(), 2);
    EXPECT_EQ(hardware->m_DeviceMap.GetCount(), 2);
    EXPECT_STREQ(hardware->m_cDiskDevices, "2 disk");
    EXPECT_STREQ(hardware->m_cCDRomDevices, "1 CD");
    EXPECT_STREQ(hardware->m_cKeyboard, "PC/AT keyboard");

    EXPECT_STREQ(hardware->m_cProcessorName, "Pentium;Pentium");
    EXPECT_STREQ(hardware->m_cProcessorSpeed, "133;133");
    EXPECT_STREQ(hardware->m_cRemovableDriveList, "C:\\;C:\\");
    EXPECT_STREQ(hardware->m_cCDRomDriveList, "F:\\;F:\\");
    EXPECT_STREQ(hardware->m_cFixedDriveList, "D(SYSTEM):(FAT:2000 MB 50% free) ;D(SYSTEM):(FAT:2000 MB 50% free) ");
    EXPECT_STREQ(hardware->m_cPrinterList, "Laser;Deskjet;Laser;Deskjet");
}

TEST_F(HardwareCollectionTest, FailedReadsOfASecondCollectionKeepWhatTheFirstFound) {
    DescribeWorkstation(1);
    SetText("HARDWARE\\DESCRIPTION\\System", "SystemBiosDate", "of Windows NT");
    Start();
    Hardware hardware;
    hardware->Collect();
    simwin::Station empty;
    empty.version = station.version;
    simwin::Machine bare(empty);
    {
        const simwin::Machine::Scope inForce(bare);
        hardware->GetBios();
        hardware->GetPowerInformation();
    }
    EXPECT_STREQ(hardware->m_cBiosVersion, "4.51 PG");
    EXPECT_STREQ(hardware->m_cBiosDate, "07/15/98");
    EXPECT_STREQ(hardware->m_cSystemIdentifier, "IBM PC/AT");
    EXPECT_EQ(hardware->m_nCurrentMhz, 133u);
}

TEST_F(HardwareCollectionTest, DestroyedCollectorTakesWhatItOwnsWithIt) {
    for (const std::uint32_t platformId : {1u, 2u, 3u}) {
        DescribeWorkstation(platformId);
        // The simulated Windows keeps what it makes at the first of all calls.
        Start();
        Collect();
        Stop();
        const std::size_t before = LiveAllocations();
        Start();
        Collect();
        EXPECT_EQ(machine->openHeapBlocks(), 0u);
        Stop();
        EXPECT_EQ(LiveAllocations(), before) << platformId;
        station = {};
    }
}

TEST_F(HardwareCollectionTest, EachCallOfTheRunLeavesOneHardwareCollectorWithWhatItOwnsAndNothingElse) {
    for (const std::uint32_t platformId : {1u, 2u}) {
        DescribeWorkstation(platformId);
        Start().keepTrace(false);
        std::vector<char> record(KVCSTAT_RECORD_SIZE);

        // The same collector by itself: what goes with it is what a call may leave.
        auto os = std::make_unique<COSInformation>();
        auto hardware = std::make_unique<CHardwareInformation>(os.get());
        hardware->m_cUserName = "UNKNOWN";
        hardware->Collect();
        const std::size_t liveWith = LiveAllocations();
        const std::size_t heapWith = machine->openHeapBlocks();
        hardware.reset();
        const std::size_t owned = liveWith - LiveAllocations();
        const std::size_t ownedOnHeap = heapWith - machine->openHeapBlocks();
        os.reset();
        ASSERT_EQ(machine->openHeapBlocks(), 0u);
        // The collector; 5 drives and 2 printers, and 6 lists of one block in two pieces each; the devices' map with
        // one block and at least one device.
        EXPECT_GE(owned, 1u + 7u + 12u + 3u);

        GetStationData(record.data());  // what the machine keeps for itself is there after the first
        for (int call = 2; call <= 4; ++call) {
            const std::size_t live = LiveAllocations();
            const std::size_t heap = machine->openHeapBlocks();
            GetStationData(record.data());
            EXPECT_EQ(LiveAllocations() - live, owned) << call;
            EXPECT_EQ(machine->openHeapBlocks() - heap, ownedOnHeap) << call;
        }
        EXPECT_THAT(machine->openHandles(simwin::HandleKind::RegistryKey), ::testing::IsEmpty());
        EXPECT_THAT(machine->openHandles(simwin::HandleKind::Library), ::testing::IsEmpty());
        Stop();
        station = {};
    }
}

TEST_F(HardwareCollectionTest, WhatAnEarlierCollectionListedIsGoneBeforeTheNextOneBegins) {
    DescribeWorkstation(2);
    Start();
    Hardware hardware;
    hardware->Collect();
    ASSERT_FALSE(hardware->m_DeviceMap.IsEmpty());
    machine->failAllocation(machine->allocations() + 1);  // the next collection's first text
    EXPECT_THROW(hardware->Collect(), std::bad_alloc);
    EXPECT_TRUE(hardware->m_DeviceMap.IsEmpty());
    for (const CObList* list : {&hardware->m_RemovableDrives, &hardware->m_FixedDrives, &hardware->m_RemoteDrives,
                                &hardware->m_CDRomDrives, &hardware->m_RamDisks, &hardware->m_Printers})
        EXPECT_TRUE(list->IsEmpty());
}

TEST_F(HardwareCollectionTest, WhicheverCallFailsNothingStaysOpen) {
    for (const std::uint32_t platformId : {1u, 2u, 3u}) {
        DescribeWorkstation(platformId);
        Start();
        Collect();
        const auto described = machine->station();
        const auto shared = std::make_shared<const simwin::Station>(described);
        const std::uint64_t calls = machine->faultableCalls();
        ASSERT_GT(calls, 50u);
        for (std::uint64_t n = 1; n <= calls; ++n) {
            simwin::Machine failing(shared);
            const simwin::Machine::Scope inForce(failing);
            failing.failCall(n);
            Collect();
            EXPECT_NE(failing.failedCall(), "");
            EXPECT_THAT(failing.openHandles(), ::testing::IsEmpty()) << failing.failedCall() << " " << n;
            EXPECT_THAT(failing.misuses(), ::testing::IsEmpty()) << failing.failedCall() << " " << n;
            EXPECT_EQ(failing.openHeapBlocks(), 0u) << failing.failedCall() << " " << n;
        }
        Stop();
        station = {};
    }
}

TEST_F(HardwareCollectionTest, WhicheverTextFindsNoMemoryNothingLeaks) {
    for (const std::uint32_t platformId : {1u, 2u, 3u}) {
        DescribeWorkstation(platformId);
        Start();
        Collect();
        const auto shared = machine->sharedStation();
        const std::uint64_t allocations = machine->allocations();
        ASSERT_GT(allocations, 10u);
        for (std::uint64_t n = 1; n <= allocations; ++n) {
            const std::size_t before = LiveAllocations();
            {
                simwin::Machine failing(shared);
                const simwin::Machine::Scope inForce(failing);
                failing.failAllocation(n);
                EXPECT_THROW(Collect(), std::bad_alloc) << n;
                EXPECT_THAT(failing.openHandles(), ::testing::IsEmpty()) << n;
                EXPECT_EQ(failing.openHeapBlocks(), 0u) << n;
            }
            EXPECT_EQ(LiveAllocations(), before) << n;
        }
        Stop();
        station = {};
    }
}

TEST_F(HardwareCollectionTest, WhicheverObjectFindsNoMemoryNothingLeaks) {
    for (const std::uint32_t platformId : {1u, 2u, 3u}) {
        DescribeWorkstation(platformId);
        // The simulated Windows keeps what it makes at the first of all calls.
        Start();
        Collect();
        const auto shared = machine->sharedStation();
        bool failed = true;
        std::size_t n = 0;
        while (failed) {
            ++n;
            const std::size_t before = LiveAllocations();
            bool thrown = false;
            {
                simwin::Machine failing(shared);
                const simwin::Machine::Scope inForce(failing);
                {
                    const FailingAllocation failure(n);
                    try {
                        Collect();
                    } catch (const std::bad_alloc&) {
                        thrown = true;
                    }
                    failed = failure.hasFailed();
                }
                EXPECT_EQ(failing.openHeapBlocks(), 0u) << n;
                EXPECT_EQ(failing.openHandles().size(), 0u) << n;
            }
            EXPECT_EQ(thrown, failed) << n;
            EXPECT_EQ(LiveAllocations(), before) << n;
        }
        EXPECT_GT(n, 20u);
        Stop();
        station = {};
    }
}

}  // namespace
