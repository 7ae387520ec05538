// Processors: numbers, clock, identifiers and names.
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::kSystem;
using kvtest::LongText;
using kvtest::Str;

std::string ProcessorKey(int index) {
    return std::string(kSystem) + "\\CentralProcessor\\" + std::to_string(index);
}

class ProcessorTest : public kvtest::HardwareTest {
  protected:
    void SetClock(int index, std::uint32_t mhz) {
        station.registry.set(MachinePath(ProcessorKey(index)), simwin::dwordValue("~MHz", mhz));
    }
    void DescribeProcessor(int index, std::uint32_t mhz, const std::string& identifier, const std::string& name) {
        SetClock(index, mhz);
        SetText(ProcessorKey(index), "Identifier", identifier);
        SetText(ProcessorKey(index), "ProcessorNameString", name);
    }
};

TEST_F(ProcessorTest, NumbersAreTheSystems) {
    DescribeWindowsNT();
    station.processors = simwin::Processors{2, 4, 21064, 21164, 0xFFFF, {}};
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_EQ(hardware->m_wProcessorArchitecture, 2);
    EXPECT_EQ(hardware->m_dwNumberOfProcessors, 4u);
    EXPECT_EQ(hardware->m_dwProcessorType, 21064u);
    EXPECT_EQ(hardware->m_dwProcessorLevel, 21164u);
    EXPECT_EQ(hardware->m_wProcessorRevision, 0xFFFF);
}

TEST_F(ProcessorTest, LevelIsWidenedWithZeros) {
    DescribeWindowsNT();
    station.processors = simwin::Processors{0, 1, 586, 0xFFFF, 0, {}};
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_EQ(hardware->m_dwProcessorLevel, 0x0000FFFFu);
}

TEST_F(ProcessorTest, ClockOfTheOnlyProcessorIsItsCurrentOne) {
    station.processors = simwin::Processors{0, 1, 586, 6, 2054, {2400}};
    Start();
    Hardware hardware;
    hardware->GetPowerInformation();
    EXPECT_EQ(hardware->m_nCurrentMhz, 2400u);
}

TEST_F(ProcessorTest, ClockStaysZeroOnAMachineWithSeveralProcessors) {
    station.processors = simwin::Processors{0, 2, 586, 6, 2054, {2400, 2400}};
    Start();
    Hardware hardware;
    hardware->GetPowerInformation();
    EXPECT_EQ(hardware->m_nCurrentMhz, 0u);
}

TEST_F(ProcessorTest, ClockStaysZeroWithoutThePowerLibraryItsFunctionOrItsAnswer) {
    station.processors = simwin::Processors{0, 1, 586, 6, 2054, {2400}};
    for (const char* missing : {"powrprof.dll", "powrprof.dll!CallNtPowerInformation"}) {
        station.missing = {missing};
        Start();
        Hardware hardware;
        hardware->GetPowerInformation();
        EXPECT_EQ(hardware->m_nCurrentMhz, 0u) << missing;
        ExpectEverythingClosed();
    }
    station.missing.clear();
    station.fails["CallNtPowerInformation"] = 0xC0000022;
    Start();
    Hardware hardware;
    hardware->GetPowerInformation();
    EXPECT_EQ(hardware->m_nCurrentMhz, 0u);
}

TEST_F(ProcessorTest, EveryProcessorIsListedWithItsNameTrimmed) {
    DescribeWindowsNT();
    for (int index = 0; index < 4; ++index)
        DescribeProcessor(index, 2793, "x86 Family 15 Model 4 Stepping 1", " \t  Intel(R) Xeon(TM) CPU 2.80GHz \r\n");
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    const std::string name = "Intel(R) Xeon(TM) CPU 2.80GHz";
    EXPECT_EQ(Str(hardware->m_cProcessorName), name + ";" + name + ";" + name + ";" + name);
    EXPECT_STREQ(hardware->m_cProcessorSpeed, "2793;2793;2793;2793");
    EXPECT_STREQ(hardware->m_cProcessorIdentifier,
                 "x86 Family 15 Model 4 Stepping 1;x86 Family 15 Model 4 Stepping 1;"
                 "x86 Family 15 Model 4 Stepping 1;x86 Family 15 Model 4 Stepping 1");
}

TEST_F(ProcessorTest, FirstProcessorWithoutANameEndsTheWalkBehindItsClockAndIdentifier) {
    DescribeWindowsNT();
    DescribeProcessor(0, 500, "x86 Family 6 Model 7", "Pentium III");
    SetClock(1, 501);
    SetText(ProcessorKey(1), "Identifier", "x86 Family 6 Model 8");
    DescribeProcessor(2, 502, "x86 Family 6 Model 9", "never read");
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_STREQ(hardware->m_cProcessorName, "Pentium III");
    EXPECT_STREQ(hardware->m_cProcessorSpeed, "500;501");
    EXPECT_STREQ(hardware->m_cProcessorIdentifier, "x86 Family 6 Model 7;x86 Family 6 Model 8");
}

TEST_F(ProcessorTest, WithoutAnyNameOnlyTheFirstProcessorIsKept) {
    DescribeWindowsNT();
    for (int index = 0; index < 2; ++index) {
        SetClock(index, 133);
        SetText(ProcessorKey(index), "Identifier", "x86 Family 5 Model 2 Stepping 12");
    }
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_STREQ(hardware->m_cProcessorName, "");
    EXPECT_STREQ(hardware->m_cProcessorSpeed, "133");
    EXPECT_STREQ(hardware->m_cProcessorIdentifier, "x86 Family 5 Model 2 Stepping 12");
}

TEST_F(ProcessorTest, ProcessorKeyThatDoesNotOpenEndsTheWalk) {
    DescribeWindowsNT();
    DescribeProcessor(0, 500, "a", "A");
    DescribeProcessor(1, 501, "b", "B");
    DescribeProcessor(2, 502, "c", "C");
    DenyKey(ProcessorKey(1));
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_STREQ(hardware->m_cProcessorName, "A");
    EXPECT_STREQ(hardware->m_cProcessorSpeed, "500");
    EXPECT_STREQ(hardware->m_cProcessorIdentifier, "a");
}

TEST_F(ProcessorTest, TwoHundredFiftySixProcessorsAreWalked) {
    DescribeWindowsNT();
    std::string names;
    std::string clocks;
    for (int index = 0; index < 256; ++index) {
        const std::string name = "CPU " + std::to_string(index);
        DescribeProcessor(index, static_cast<std::uint32_t>(1000 + index), "x86", name);
        names += (index == 0 ? "" : ";") + name;
        clocks += (index == 0 ? "" : ";") + std::to_string(1000 + index);
    }
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_EQ(Str(hardware->m_cProcessorName), names);
    EXPECT_EQ(Str(hardware->m_cProcessorSpeed), clocks);
}

TEST_F(ProcessorTest, ClockOfAnotherTypeAndMissingIdentifierAreLeftOut) {
    DescribeWindowsNT();
    SetText(ProcessorKey(0), "~MHz", "500");
    SetText(ProcessorKey(0), "ProcessorNameString", "A");
    DescribeProcessor(1, 501, "b", "B");
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_STREQ(hardware->m_cProcessorSpeed, "501");
    EXPECT_STREQ(hardware->m_cProcessorIdentifier, "b");
    EXPECT_STREQ(hardware->m_cProcessorName, "A;B");
}

TEST_F(ProcessorTest, ClockPrintsAsASignedNumber) {
    DescribeWindowsNT();
    SetClock(0, 0xFFFFFFFF);
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_STREQ(hardware->m_cProcessorSpeed, "-1");
}

TEST_F(ProcessorTest, BlankNamesAreItemsOfTheirOwn) {
    DescribeWindowsNT();
    DescribeProcessor(0, 1, "a", "A");
    DescribeProcessor(1, 2, "b", "   ");
    DescribeProcessor(2, 3, "c", "C");
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_STREQ(hardware->m_cProcessorName, "A;;C");
}

TEST_F(ProcessorTest, TextsOf64KilobytesArriveWhole) {
    DescribeWindowsNT();
    SetText(kSystem, "Identifier", LongText());
    DescribeProcessor(0, 1, LongText(), LongText());
    DescribeProcessor(1, 2, LongText(), LongText());
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_EQ(Str(hardware->m_cSystemIdentifier), LongText());
    EXPECT_EQ(Str(hardware->m_cProcessorIdentifier), LongText() + ";" + LongText());
    EXPECT_EQ(Str(hardware->m_cProcessorName), LongText() + ";" + LongText());
}

TEST_F(ProcessorTest, Windows9xReadsTheSystemIdentifierAndNoProcessor) {
    DescribeWindows98();
    SetText(kSystem, "Identifier", "AT/AT COMPATIBLE");
    DescribeProcessor(0, 500, "x86", "Pentium III");
    Start();
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_STREQ(hardware->m_cSystemIdentifier, "AT/AT COMPATIBLE");
    EXPECT_STREQ(hardware->m_cProcessorSpeed, "");
    EXPECT_STREQ(hardware->m_cProcessorIdentifier, "");
    EXPECT_STREQ(hardware->m_cProcessorName, "");
}

TEST_F(ProcessorTest, OtherPlatformsReadNothingOfTheRegistry) {
    SetText(kSystem, "Identifier", "AT/AT COMPATIBLE");
    DescribeProcessor(0, 500, "x86", "Pentium III");
    for (const std::uint32_t platform : {0u, 3u}) {
        DescribePlatform(platform);
        Start();
        Hardware hardware;
        EXPECT_EQ(hardware->GetProcessor(), 0);
        EXPECT_STREQ(hardware->m_cSystemIdentifier, "");
        EXPECT_STREQ(hardware->m_cProcessorSpeed, "");
    }
}

TEST_F(ProcessorTest, StepRunsThePowerStepBeforeTheRegistryAndBiosMemoryAndOwnerBehindIt) {
    DescribeWindowsNT();
    DescribeProcessor(0, 500, "x86", "A");
    Start().keepLog(true);
    Hardware hardware;
    hardware->GetProcessor();
    EXPECT_THAT(CallsAmong({"GetSystemInfo", "LoadLibraryA", "RegOpenKeyA", "GlobalMemoryStatus", "GetUserNameA"}),
                ::testing::ElementsAre("GetSystemInfo", "LoadLibraryA",
                                       "RegOpenKeyA",         // the system
                                       "RegOpenKeyA",         // the processor
                                       "RegOpenKeyA",         // the one behind it
                                       "RegOpenKeyA",         // the BIOS
                                       "GlobalMemoryStatus",  //
                                       "RegOpenKeyA",         // the owner
                                       "GetUserNameA"));
}

TEST_F(ProcessorTest, StatusIsTheOwnerSteps) {
    DescribeWindowsNT();
    Start();
    {
        Hardware hardware;
        EXPECT_EQ(hardware->GetProcessor(), -1);
    }
    SetText("Software\\Microsoft\\Windows NT\\CurrentVersion", "ProductId", "50370-OEM-0011903-00101");
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetProcessor(), 0);
}

}  // namespace
