// Physical memory and virtual address space.
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::kMB;

constexpr std::uint64_t kGB = 1024 * kMB;
constexpr std::uint64_t kTB = 1024 * kGB;

class MemoryTest : public kvtest::HardwareTest {};

TEST_F(MemoryTest, PhysicalMemoryIsRoundedAndThenMadeEven) {
    const struct {
        std::uint64_t bytes;
        DWORD megabytes;
    } rows[] = {
        {0, 0},
        {1, 0},
        {kMB / 2 - 1, 0},
        {kMB / 2, 2},  // rounds to 1
        {kMB, 2},
        {3 * kMB / 2 - 1, 2},
        {3 * kMB / 2, 2},
        {5 * kMB / 2, 4},  // rounds to 3
        {1071644672, 1022},
        {1072693248, 1024},  // 1023 MB
        {1073217536, 1024},  // 1023.5 MB
        {2684354560, 2560},
        {4 * kGB - 1, 4096},
        {4 * kGB, 4096},
        {4 * kGB + kMB, 4098},
        {16 * kGB - 64 * kMB, 16320},
        {kTB - kMB, 1048576},
        {kTB, 1048576},
        {kTB + kMB, 1048578},
        {24 * kTB, 25165824},
    };
    for (const auto& row : rows) {
        station.memory = simwin::Memory{row.bytes, 0};
        Start();
        Hardware hardware;
        EXPECT_EQ(hardware->GetMemory(), 0);
        EXPECT_EQ(hardware->m_nTotalMemoryMB, row.megabytes) << row.bytes;
    }
}

TEST_F(MemoryTest, VirtualMemoryIsRoundedAndMayBeOdd) {
    const struct {
        std::uint64_t bytes;
        DWORD megabytes;
    } rows[] = {
        {0, 0},
        {kMB, 1},
        {1023 * kMB, 1023},
        {2147352576, 2048},  // 2 GB less the 128 KB that no process has
        {140737488224256, 134217728},
    };
    for (const auto& row : rows) {
        station.memory = simwin::Memory{0, row.bytes};
        Start();
        Hardware hardware;
        hardware->GetMemory();
        EXPECT_EQ(hardware->m_nVirtualMemoryMB, row.megabytes) << row.bytes;
    }
}

TEST_F(MemoryTest, MegabytesBeyond32BitsLoseWhatStandsAboveThem) {
    const struct {
        std::uint64_t bytes;
        DWORD megabytes;
    } rows[] = {
        {4096 * kTB, 0},
        {4096 * kTB + 2 * kMB, 2},
        {4096 * kTB - kMB, 0},  // 4294967295 is odd, and one more is 0
        {0xFFFFFFFFFFFFFFFF, 0},
    };
    for (const auto& row : rows) {
        station.memory = simwin::Memory{row.bytes, 0};
        Start();
        Hardware hardware;
        hardware->GetMemory();
        EXPECT_EQ(hardware->m_nTotalMemoryMB, row.megabytes) << row.bytes;
    }
}

TEST_F(MemoryTest, MachineWithoutAnAnswerHasNoMemory) {
    Start();
    Hardware hardware;
    EXPECT_EQ(hardware->GetMemory(), 0);
    EXPECT_EQ(hardware->m_nTotalMemoryMB, 0u);
    EXPECT_EQ(hardware->m_nVirtualMemoryMB, 0u);
}

}  // namespace
