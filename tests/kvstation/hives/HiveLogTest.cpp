// What Windows had begun to write into a hive and left in the logs beside it.
#include "kvstation/hives/HiveLog.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "../TemporaryFolder.h"
#include "kvstation/hives/BaseBlock.h"
#include "kvstation/hives/LittleEndian.h"
#include "kvstation/hives/MarvinHash.h"
#include "kvstation/import/HiveRegistry.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "tests/kvstation/hives/HiveWriter.h"
#include "tests/kvstation/hives/LogWriter.h"

namespace kvstation {
namespace {

using simwin::RegistryTree;
using simwin::textValue;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kKey = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\ComputerName\\ComputerName";

// The hash's own published examples.
TEST(MarvinHash, IsThatOfItsExamples) {
    constexpr std::uint64_t kExampleSeed = 0x004FB61A001BDBCC;
    EXPECT_EQ(marvinHash("", kExampleSeed), 0x30ED35C100CD3C7D);
    EXPECT_EQ(marvinHash("\xAF", kExampleSeed), 0x48E73FC77D75DDC1);
    EXPECT_EQ(marvinHash("\xE7\x0F", kExampleSeed), 0xB5F6E1FC485DBFF8);
    EXPECT_EQ(marvinHash("\x37\xF4\x95", kExampleSeed), 0xF0B07C789B8CF7E8);
}

// Two hives that differ in a text of the same length: what is on disk, and what was to be written there.
class UnfinishedHive : public testing::Test {
  protected:
    UnfinishedHive() {
        RegistryTree tree;
        tree.set(kKey, textValue("ComputerName", "OLD-NAME"));
        writeHives(folder / "", tree);
        old = unfinished(readFile(folder / "SYSTEM", 1 << 24));
        whole = old;
        const std::string oldName("O\0L\0D\0", 6);
        const std::string newName("N\0E\0W\0", 6);
        place = whole.find(oldName) - kBaseBlock;
        whole.replace(whole.find(oldName), newName.size(), newName);
        writeFile(folder / "SYSTEM", old);
    }
    LogPage page(std::size_t size) const {
        const std::size_t begin = place / size * size;
        return {begin, whole.substr(kBaseBlock + begin, size)};
    }
    // The page that has the first one's bytes, with a third name.
    LogPage otherPage(std::size_t size) const {
        LogPage other = page(size);
        const std::string newName("N\0E\0W\0", 6);
        other.bytes.replace(other.bytes.find(newName), newName.size(), std::string("3\0R\0D\0", 6));
        return other;
    }
    std::uint32_t had() const { return BaseBlock(old).secondSequence(); }

    std::string name() {
        HiveRegistry registry(findHives(folder / "", ""));
        remarks = registry.remarks();
        RegistryTree found;
        registry.copyKey(kKey, found);
        const simwin::RegistryValue* value = found.findValue(*found.find(kKey), "ComputerName");
        return value != nullptr ? value->bytes.substr(0, value->bytes.find('\0')) : "none";
    }
    TemporaryFolder folder;
    std::string old;
    std::string whole;
    std::size_t place = 0;
    std::vector<std::string> remarks;
};

TEST_F(UnfinishedHive, GetsTheEntriesThatItDoesNotHaveYet) {
    writeFile(folder / "system.log1", logOfEntries(old, {{had(), {page(4096)}}, {had() + 1, {}}}));
    EXPECT_EQ(name(), "NEW-NAME");
    EXPECT_THAT(
        remarks,
        ElementsAre(testing::EndsWith("SYSTEM was not written to its end; applied in memory: entries " +
                                      std::to_string(had()) + " to " + std::to_string(had() + 1) + " of system.log1")));
    EXPECT_EQ(readFile(folder / "SYSTEM", 1 << 24), old);
}

TEST_F(UnfinishedHive, GetsTheSecondLogsEntriesBehindTheFirstOnes) {
    writeFile(folder / "SYSTEM.LOG1", logOfEntries(old, {{had() + 1, {otherPage(4096)}}}));
    writeFile(folder / "SYSTEM.LOG2", logOfEntries(old, {{had(), {page(4096)}}}));
    EXPECT_EQ(name(), "3RD-NAME");
    EXPECT_THAT(remarks, ElementsAre(testing::EndsWith("applied in memory: entry " + std::to_string(had()) +
                                                       " of SYSTEM.LOG2, entry " + std::to_string(had() + 1) +
                                                       " of SYSTEM.LOG1")));
}

TEST_F(UnfinishedHive, GetsNoEntryBehindANumberThatIsLeftOut) {
    writeFile(folder / "SYSTEM.LOG1", logOfEntries(old, {{had(), {page(4096)}}}));
    writeFile(folder / "SYSTEM.LOG2", logOfEntries(old, {{had() + 2, {otherPage(4096)}}}));
    EXPECT_EQ(name(), "NEW-NAME");
}

TEST_F(UnfinishedHive, GetsNoOlderEntries) {
    writeFile(
        folder / "SYSTEM.LOG1",
        logOfEntries(old, {{had() - 1, {otherPage(4096)}}, {had(), {page(4096)}}, {had() - 1, {otherPage(4096)}}}));
    EXPECT_EQ(name(), "NEW-NAME");
}

TEST_F(UnfinishedHive, GetsNoEntryThatIsNotAsItWasWritten) {
    for (const std::size_t byte : {512U + 12U, 512U + 20U, 512U + 24U, 512U + 32U, 512U + 100U}) {
        std::string log = logOfEntries(old, {{had(), {page(4096)}}});
        log[byte] = static_cast<char>(log[byte] ^ 0x10);
        writeFile(folder / "SYSTEM.LOG1", log);
        EXPECT_EQ(name(), "OLD-NAME") << byte;
        EXPECT_THAT(remarks, ElementsAre(testing::EndsWith("no log beside it goes with it, and what Windows kept there "
                                                           "is missing")));
    }
}

TEST_F(UnfinishedHive, GetsNoPageBeyondItsEnd) {
    LogPage beyond = page(4096);
    beyond.place = BaseBlock(old).binsSize();
    writeFile(folder / "SYSTEM.LOG1", logOfEntries(old, {{had(), {beyond}}}));
    EXPECT_EQ(name(), "OLD-NAME");
}

TEST_F(UnfinishedHive, GrowsWithItsEntries) {
    std::string longer = old;
    putBinsSize(longer, BaseBlock(old).binsSize() + 4096);
    const LogPage more{BaseBlock(old).binsSize(), std::string(4096, 'x')};
    std::string hive = old;
    EXPECT_THAT(applyLogs(hive, {{"SYSTEM.LOG1", logOfEntries(longer, {{had(), {more}}})}}),
                ElementsAre("entry " + std::to_string(had()) + " of SYSTEM.LOG1"));
    EXPECT_EQ(hive.size(), old.size() + 4096);
    EXPECT_EQ(hive.substr(old.size()), more.bytes);
    EXPECT_EQ(BaseBlock(hive).binsSize(), BaseBlock(old).binsSize() + 4096);
    EXPECT_EQ(BaseBlock(hive).firstSequence(), had());
    EXPECT_TRUE(BaseBlock(hive).hasRightSum());
}

TEST_F(UnfinishedHive, GetsThePagesOfAnOldLog) {
    writeFile(folder / "SYSTEM.LOG", logOfPages(old, {page(512)}));
    EXPECT_EQ(name(), "NEW-NAME");
    EXPECT_THAT(remarks, ElementsAre(testing::EndsWith("SYSTEM was not written to its end; applied in memory: 1 page "
                                                       "of 512 bytes of SYSTEM.LOG")));
}

TEST_F(UnfinishedHive, GetsNoPagesOfALogOfAnotherTime) {
    std::string other = old;
    putNumber(other, 12, 77);
    writeFile(folder / "SYSTEM.LOG", logOfPages(other, {page(512)}));
    EXPECT_EQ(name(), "OLD-NAME");
}

TEST_F(UnfinishedHive, GetsNoPagesOfALogThatEndsBeforeThem) {
    const std::string log = logOfPages(old, {page(512)});
    for (std::size_t length = 0; length < log.size(); length += 64) {
        std::string hive = old;
        EXPECT_THAT(applyLogs(hive, {{"SYSTEM.LOG", log.substr(0, length)}}), IsEmpty()) << length;
        EXPECT_EQ(hive, old);
    }
}

TEST_F(UnfinishedHive, GetsAFirstBlockThatIsDamagedFromItsLog) {
    std::string hive = old;
    hive[40] = '\x7F';
    writeFile(folder / "SYSTEM", hive);
    writeFile(folder / "SYSTEM.LOG", logOfPages(old, {page(512)}));
    EXPECT_EQ(name(), "NEW-NAME");
    EXPECT_THAT(remarks, ElementsAre(testing::HasSubstr("SYSTEM has a damaged first block; applied in memory: ")));
    std::filesystem::remove(folder / "SYSTEM.LOG");
    writeFile(folder / "SYSTEM.LOG1", logOfEntries(old, {{had(), {page(4096)}}}));
    EXPECT_EQ(name(), "NEW-NAME");
}

TEST_F(UnfinishedHive, WithoutItsSignatureIsKnownByItsSumOrItsLog) {
    writeFile(folder / "SYSTEM", "xxxx" + old.substr(4));
    EXPECT_EQ(name(), "OLD-NAME");
    EXPECT_THAT(remarks.front(), testing::EndsWith("SYSTEM does not begin with \"regf\", which its sum tells to be all "
                                                   "that is damaged there"));
    writeFile(folder / "SYSTEM", "xxxxxxxx" + old.substr(8));
    EXPECT_THROW(name(), Failure);
    writeFile(folder / "SYSTEM.LOG1", logOfEntries(old, {{had(), {page(4096)}}}));
    EXPECT_EQ(name(), "NEW-NAME");
    EXPECT_THAT(remarks, ElementsAre(testing::HasSubstr("SYSTEM has a damaged first block; applied in memory: ")));
}

TEST_F(UnfinishedHive, IsReadWithoutALogThatCannotBeRead) {
    ASSERT_EQ(mkfifo((folder / "SYSTEM.LOG1").c_str(), 0600), 0);
    writeFile(folder / "SYSTEM.LOG2", logOfEntries(old, {{had(), {page(4096)}}}));
    EXPECT_EQ(name(), "NEW-NAME");
    EXPECT_THAT(remarks, ElementsAre(testing::AllOf(testing::HasSubstr("SYSTEM.LOG1"),
                                                    testing::EndsWith("; what Windows kept there is missing")),
                                     testing::HasSubstr("SYSTEM.LOG2")));
}

TEST_F(UnfinishedHive, IsReadAsItIsWithoutALog) {
    EXPECT_EQ(name(), "OLD-NAME");
    EXPECT_THAT(remarks, ElementsAre(testing::EndsWith("what Windows kept in the log beside it is missing")));
}

TEST_F(UnfinishedHive, LeavesItsLogsAloneWhenItIsWhole) {
    std::string finished = old;
    putSequences(finished, had());
    writeFile(folder / "SYSTEM", finished);
    writeFile(folder / "SYSTEM.LOG1", logOfEntries(old, {{had(), {page(4096)}}}));
    EXPECT_EQ(name(), "OLD-NAME");
    EXPECT_THAT(remarks, IsEmpty());
}

TEST_F(UnfinishedHive, WithAnyByteOfItsLogDamagedIsReadAsOneOfTheTwo) {
    for (const std::string& log : {logOfEntries(old, {{had(), {page(4096)}}}), logOfPages(old, {page(512)})})
        for (std::size_t i = 0; i < log.size(); i += i < 1024 ? 1 : 61) {
            std::string damaged = log;
            damaged[i] = static_cast<char>(damaged[i] ^ 0xFF);
            std::string hive = old;
            const bool isApplied = !applyLogs(hive, {{"SYSTEM.LOG", damaged}}).empty();
            EXPECT_EQ(isApplied, hive != old) << i;
        }
}

}  // namespace
}  // namespace kvstation
