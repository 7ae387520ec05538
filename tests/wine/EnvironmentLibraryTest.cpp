// kvenv64.dll: the process environment.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>

#include "companions/kvenv/kvenv.h"
#include "framework/Windows.h"
#include "tests/wine/LoadedModule.h"

namespace {

constexpr char kGuard = '\xA5';

// The blocks that the library takes of the heap, each with a guard right behind it.
struct Heap {
    bool full = false;
    std::map<void*, SIZE_T> blocks;
} g_heap;

void* WINAPI TakeBlock(HANDLE heap, DWORD flags, SIZE_T size) {
    if (g_heap.full)
        return nullptr;
    auto* block = static_cast<char*>(HeapAlloc(heap, flags, size + 1));
    block[size] = kGuard;
    g_heap.blocks[block] = size;
    return block;
}

BOOL WINAPI GiveBlockBack(HANDLE heap, DWORD flags, void* block) {
    EXPECT_EQ(0U, flags);
    EXPECT_EQ(kGuard, static_cast<char*>(block)[g_heap.blocks[block]]);
    g_heap.blocks.erase(block);
    return HeapFree(heap, flags, block);
}

bool g_vanishing = false;  // another thread removes the variable before its size is asked for

// Windows leaves anything in a buffer that is too small, and is to be asked for a size without one.
DWORD WINAPI AskVariable(const char* name, char* buffer, DWORD size) {
    EXPECT_TRUE(buffer != nullptr || size == 0);
    if (buffer == nullptr && g_vanishing)
        SetEnvironmentVariableA(name, nullptr);
    const DWORD length = GetEnvironmentVariableA(name, buffer, size);
    if (length >= size)
        std::fill_n(buffer, size, '?');
    return length;
}

// A variable of the test's own, gone before and after it.
class EnvironmentLibrary : public testing::Test {
  protected:
    EnvironmentLibrary() { SetEnvironmentVariableA(m_name, nullptr); }
    ~EnvironmentLibrary() override {
        SetEnvironmentVariableA(m_name, nullptr);
        EXPECT_THAT(g_heap.blocks, testing::IsEmpty());
        g_heap = {};
        g_vanishing = false;
    }

    HMODULE m_library = GetModuleHandleA("kvenv64.dll");
    ImportOverride m_ask{m_library, "kernel32.dll", "GetEnvironmentVariableA", AskVariable};
    ImportOverride m_take{m_library, "kernel32.dll", "HeapAlloc", TakeBlock};
    ImportOverride m_giveBack{m_library, "kernel32.dll", "HeapFree", GiveBlockBack};

    char m_name[24] = "KV_COMPANIONS_TEST";
    char m_buffer[512] = "before";
};

TEST_F(EnvironmentLibrary, IsImportedByOrdinal) {
    EXPECT_THAT(ImportsOf(GetModuleHandleA(nullptr))["kvenv64.dll"], testing::ElementsAre("#2", "#3"));
}

TEST_F(EnvironmentLibrary, GivesWhatItWasGiven) {
    char value[] = "10.1.2.3";
    EXPECT_NE(0, KVSetEnv(m_name, value));
    EXPECT_NE(0, KVGetEnv(m_name, m_buffer, sizeof m_buffer));
    EXPECT_STREQ("10.1.2.3", m_buffer);
}

TEST_F(EnvironmentLibrary, SharesTheVariablesOfTheProcess) {
    ASSERT_TRUE(SetEnvironmentVariableA(m_name, "from Windows"));
    EXPECT_NE(0, KVGetEnv(m_name, m_buffer, sizeof m_buffer));
    EXPECT_STREQ("from Windows", m_buffer);

    char value[] = "from us";
    EXPECT_NE(0, KVSetEnv(m_name, value));
    char seen[32] = {};
    EXPECT_EQ(7U, GetEnvironmentVariableA(m_name, seen, sizeof seen));
    EXPECT_STREQ("from us", seen);
}

TEST_F(EnvironmentLibrary, FindsNamesInAnyLetterCase) {
    ASSERT_TRUE(SetEnvironmentVariableA(m_name, "value"));
    EXPECT_NE(0, KVGetEnv("kv_companions_TEST", m_buffer, sizeof m_buffer));
    EXPECT_STREQ("value", m_buffer);
}

TEST_F(EnvironmentLibrary, MissingVariableIsZeroAndEmptiesTheBuffer) {
    EXPECT_EQ(0, KVGetEnv(m_name, m_buffer, sizeof m_buffer));
    EXPECT_STREQ("", m_buffer);
}

TEST_F(EnvironmentLibrary, EmptyVariableExists) {
    char value[] = "";
    EXPECT_NE(0, KVSetEnv(m_name, value));
    EXPECT_NE(0, KVGetEnv(m_name, m_buffer, sizeof m_buffer));
    EXPECT_STREQ("", m_buffer);
}

TEST_F(EnvironmentLibrary, NullValueRemovesTheVariable) {
    ASSERT_TRUE(SetEnvironmentVariableA(m_name, "value"));
    EXPECT_NE(0, KVSetEnv(m_name, nullptr));
    EXPECT_EQ(0, KVGetEnv(m_name, m_buffer, sizeof m_buffer));
}

TEST_F(EnvironmentLibrary, CutsEveryLengthAtTheBufferAndWritesNothingBehindIt) {
    constexpr int kWidth = 16;
    for (std::size_t length = 0; length <= 2 * kWidth; ++length) {
        std::string value(length, 'v');
        ASSERT_NE(0, KVSetEnv(m_name, value.data()));
        std::array<char, 2 * kWidth> memory;
        memory.fill(kGuard);

        EXPECT_NE(0, KVGetEnv(m_name, memory.data(), kWidth)) << length;

        EXPECT_EQ(value.substr(0, kWidth - 1), memory.data()) << length;
        EXPECT_EQ(std::string(kWidth, kGuard), std::string(memory.data() + kWidth, kWidth)) << length;
    }
}

TEST_F(EnvironmentLibrary, CutsTheLongestValueThatWindowsKeeps) {
    std::string value(32000, 'v');
    ASSERT_NE(0, KVSetEnv(m_name, value.data()));
    EXPECT_NE(0, KVGetEnv(m_name, m_buffer, sizeof m_buffer));
    EXPECT_EQ(value.substr(0, 511), m_buffer);
}

TEST_F(EnvironmentLibrary, LongValueIsMissingAndTheBufferEmptyWhereNoMemoryIsLeft) {
    ASSERT_TRUE(SetEnvironmentVariableA(m_name, std::string(600, 'v').c_str()));
    g_heap.full = true;
    EXPECT_EQ(0, KVGetEnv(m_name, m_buffer, sizeof m_buffer));
    EXPECT_STREQ("", m_buffer);
}

TEST_F(EnvironmentLibrary, LongValueThatVanishesMeanwhileIsMissing) {
    ASSERT_TRUE(SetEnvironmentVariableA(m_name, std::string(600, 'v').c_str()));
    g_vanishing = true;
    EXPECT_EQ(0, KVGetEnv(m_name, m_buffer, sizeof m_buffer));
    EXPECT_STREQ("", m_buffer);
}

TEST_F(EnvironmentLibrary, BufferOfOneByteArrivesEmptyAndTakesNoMemory) {
    ASSERT_TRUE(SetEnvironmentVariableA(m_name, "value"));
    g_heap.full = true;
    EXPECT_NE(0, KVGetEnv(m_name, m_buffer, 1));
    EXPECT_STREQ("", m_buffer);
}

TEST_F(EnvironmentLibrary, BufferOfTwoBytesHoldsOne) {
    ASSERT_TRUE(SetEnvironmentVariableA(m_name, "value"));
    EXPECT_NE(0, KVGetEnv(m_name, m_buffer, 2));
    EXPECT_STREQ("v", m_buffer);
}

TEST_F(EnvironmentLibrary, WithoutABufferItTellsWhetherTheVariableExists) {
    EXPECT_EQ(0, KVGetEnv(m_name, nullptr, 512));
    ASSERT_TRUE(SetEnvironmentVariableA(m_name, "value"));
    EXPECT_NE(0, KVGetEnv(m_name, nullptr, 512));
    EXPECT_NE(0, KVGetEnv(m_name, m_buffer, 0));
    EXPECT_NE(0, KVGetEnv(m_name, m_buffer, -1));
    EXPECT_STREQ("before", m_buffer);
}

TEST_F(EnvironmentLibrary, RefusesWhatIsNoName) {
    char value[] = "value";
    char empty[] = "";
    char assignment[] = "KV=1";
    EXPECT_EQ(0, KVSetEnv(nullptr, value));
    EXPECT_EQ(0, KVSetEnv(nullptr, nullptr));
    EXPECT_EQ(0, KVSetEnv(empty, value));
    EXPECT_EQ(0, KVSetEnv(assignment, value));
    EXPECT_EQ(0, KVGetEnv(nullptr, m_buffer, sizeof m_buffer));
    EXPECT_STREQ("", m_buffer);
    EXPECT_EQ(0, KVGetEnv(nullptr, nullptr, 0));
}

}  // namespace
