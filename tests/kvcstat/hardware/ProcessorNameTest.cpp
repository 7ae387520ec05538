// The processor's name by its numbers.
#include "kvcstat/hardware/RevisionSuffix.h"
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::Str;

class ProcessorNameTest : public kvtest::HardwareTest {
  protected:
    // The name that the fallback gives on the platform.
    std::string NameNT(WORD architecture, DWORD level) {
        Hardware hardware;
        hardware.os.m_dwPlatformId = 2;
        hardware->m_wProcessorArchitecture = architecture;
        hardware->m_dwProcessorLevel = level;
        hardware->m_wProcessorRevision = 0x0806;
        hardware->GetProcessorNameFallback();
        return Str(hardware->m_cProcessorName);
    }
    std::string NameOfType(DWORD platformId, DWORD type) {
        Hardware hardware;
        hardware.os.m_dwPlatformId = platformId;
        hardware->m_dwProcessorType = type;
        hardware->GetProcessorNameFallback();
        return Str(hardware->m_cProcessorName);
    }
};

TEST_F(ProcessorNameTest, IntelNamesFollowTheLevelWithTheLevelInThePlaceOfTheRevision) {
    const struct {
        DWORD level;
        const char* name;
    } rows[] = {
        {3, "Intel 80386-D0"},    {4, "Intel 80486-E0"},       {5, "Intel Pentium(5.0)"}, {6, "Intel processor"},
        {15, "Intel processor"},  {0, "Intel processor"},      {1, "Intel processor"},    {2, "Intel processor"},
        {255, "Intel processor"}, {0xFFFF, "Intel processor"},
    };
    Start();
    for (const auto& row : rows)
        EXPECT_EQ(NameNT(0, row.level), row.name) << row.level;
}

TEST_F(ProcessorNameTest, MipsNamesFollowTheLowByteOfTheLevel) {
    const struct {
        DWORD level;
        const char* name;
    } rows[] = {{4, "MIPS R4000"},     {0x0104, "MIPS R4000"},     {0xFF04, "MIPS R4000"},
                {5, "MIPS processor"}, {0x0400, "MIPS processor"}, {0, "MIPS processor"}};
    Start();
    for (const auto& row : rows)
        EXPECT_EQ(NameNT(1, row.level), row.name) << row.level;
}

TEST_F(ProcessorNameTest, AlphaNamesFollowTheLevel) {
    const struct {
        DWORD level;
        const char* name;
    } rows[] = {{21064, "Alpha 21064"},     {21066, "Alpha 21066"}, {21164, "Alpha 21164"},
                {21264, "Alpha processor"}, {0, "Alpha processor"}, {5, "Alpha processor"}};
    Start();
    for (const auto& row : rows)
        EXPECT_EQ(NameNT(2, row.level), row.name) << row.level;
}

TEST_F(ProcessorNameTest, PowerPCNamesFollowTheLevel) {
    const struct {
        DWORD level;
        const char* name;
    } rows[] = {{1, "PPC 601"},       {3, "PPC 603"},       {4, "PPC 604"},       {6, "PPC 603+"},
                {9, "PPC 604+"},      {20, "PPC 620"},      {0, "PPC processor"}, {2, "PPC processor"},
                {5, "PPC processor"}, {7, "PPC processor"}, {8, "PPC processor"}, {10, "PPC processor"},
                {21, "PPC processor"}};
    Start();
    for (const auto& row : rows)
        EXPECT_EQ(NameNT(3, row.level), row.name) << row.level;
}

TEST_F(ProcessorNameTest, OtherArchitecturesAreUnknown) {
    Start();
    for (const WORD architecture : {WORD{4}, WORD{6}, WORD{9}, WORD{12}, WORD{0xFFFF}})
        EXPECT_EQ(NameNT(architecture, 5), "Unknown processor") << architecture;
}

TEST_F(ProcessorNameTest, Windows9xNamesFollowTheType) {
    const struct {
        DWORD type;
        const char* name;
    } rows[] = {{386, "Intel 80386"},
                {486, "Intel 80486"},
                {586, "Intel Pentium"},
                {4000, "MIPS R4000"},
                {21064, "Alpha 21064"},
                {21066, ""},
                {686, ""},
                {0, ""},
                {0xFFFFFFFF, ""}};
    Start();
    for (const auto& row : rows)
        EXPECT_EQ(NameOfType(1, row.type), row.name) << row.type;
}

TEST_F(ProcessorNameTest, OtherPlatformsGiveNoName) {
    Start();
    EXPECT_EQ(NameOfType(0, 586), "");
    EXPECT_EQ(NameOfType(3, 586), "");
}

TEST_F(ProcessorNameTest, NameThatWasReadStays) {
    Start();
    Hardware hardware;
    hardware.os.m_dwPlatformId = 2;
    hardware->m_dwProcessorLevel = 5;
    hardware->m_cProcessorName = "Pentium III";
    hardware->GetProcessorNameFallback();
    EXPECT_STREQ(hardware->m_cProcessorName, "Pentium III");
}

TEST_F(ProcessorNameTest, PlatformIsTheOSCollectorsAndNotTheSystems) {
    DescribeWindowsNT();
    Start();
    Hardware hardware;
    hardware.os.m_dwPlatformId = 1;
    hardware->m_dwProcessorType = 486;
    hardware->m_dwProcessorLevel = 5;
    hardware->GetProcessorNameFallback();
    EXPECT_STREQ(hardware->m_cProcessorName, "Intel 80486");
}

TEST_F(ProcessorNameTest, SuffixIsSteppingOrModelOfTheRevision) {
    const struct {
        DWORD level;
        DWORD revision;
        const char* suffix;
    } rows[] = {
        {2, 0, ""},
        {6, 6, ""},
        {3, 3, "-D0"},
        {4, 4, "-E0"},
        {4, 0, "-A0"},
        {3, 0x00070001, "-B7"},
        {4, 0xFFFF0002, "-C65535"},
        {3, 0x4B0500FF, "-A5"},    // 0x4B is 75, of which 10 is taken: 'A' is 65
        {4, 0x5AFF00FF, "-P255"},  // 90 less 10: 'P' is 80
        {5, 5, "(5.0)"},
        {5, 0x000C0002, "(2.12)"},
        {5, 0x000000FF, "(255.0)"},
    };
    Start();
    for (const auto& row : rows)
        EXPECT_EQ(Str(RevisionSuffix(row.level, row.revision)), row.suffix) << row.level << " " << row.revision;
}

}  // namespace
