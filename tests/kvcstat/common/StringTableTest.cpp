// The module's fixed texts.
#include "kvcstat/common/StringIds.h"
#include "tests/kvcstat/MachineTest.h"
#include "tests/kvcstat/common/AbsentStringIds.h"

namespace {

class StringTableTest : public kvtest::MachineTest {};

TEST_F(StringTableTest, TextsLoadByTheirIds) {
    Start();
    const struct {
        unsigned id;
        const char* text;
    } rows[] = {
        {IDS_TERMINAL_SERVER, "Microsoft Terminal Server"},
        {IDS_UNKNOWN_VALUE, "unknown"},
        {IDS_UNKNOWN_NAME, "unknown"},
        {IDS_PRINTER_NAME, "%s"},
        {IDS_KEYBOARD_OLIVETTI, "Olivetti \"ICO\" keyboard (102 keys) "},
        {IDS_KEYBOARD_EXTENDED, "Extended IBM keyboard (101 or 102 keys) "},
        {IDS_PPC_604_PLUS, "PPC 604+"},
        {IDS_FIREFOX, "Firefox"},
    };
    for (const auto& row : rows) {
        CString text;
        EXPECT_TRUE(text.LoadString(row.id)) << row.id;
        EXPECT_STREQ(text, row.text);
    }
}

TEST_F(StringTableTest, IdWithoutATextLoadsAsEmpty) {
    Start();
    for (const unsigned id : kvtest::absentStringIds()) {
        CString text("before");
        EXPECT_FALSE(text.LoadString(id)) << id;
        EXPECT_STREQ(text, "") << id;
        EXPECT_EQ(text.GetLength(), 0) << id;
    }
}

}  // namespace
