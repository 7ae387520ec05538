#include "kvstation/report/LayoutTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>

#include "include/kvcstat.h"
#include "kvstation/platform/Files.h"
#include "kvstation/record/FieldTable.h"
#include "kvstation/rows/RowSchema.h"
#include "tests/kvstation/Samples.h"

namespace kvstation {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

struct Place {
    std::size_t offset;
    std::size_t width;
    std::size_t limit;
};

// As the header has them, in the order of the table.
constexpr Place kPlaces[] = {
#define KV_TEXT(name, offset, width, limit, group, meaning) \
    {offsetof(STATIONDATA, name), sizeof(STATIONDATA::name), sizeof(STATIONDATA::name) - 1},
#define KV_NUMBER(name, offset, group, meaning) {offsetof(STATIONDATA, name), sizeof(STATIONDATA::name), 0},
#define KV_UNSIGNED(name, offset, group, meaning) {offsetof(STATIONDATA, name), sizeof(STATIONDATA::name), 0},
#include "include/kvcstat_fields.inc"
};

TEST(Layout, FieldsStandAtTheirPlaces) {
    ASSERT_EQ(fields().size(), std::size(kPlaces));
    for (std::size_t i = 0; i < fields().size(); ++i) {
        EXPECT_EQ(fields()[i].offset, kPlaces[i].offset) << fields()[i].name;
        EXPECT_EQ(fields()[i].width, kPlaces[i].width) << fields()[i].name;
        EXPECT_EQ(fields()[i].limit, kPlaces[i].limit) << fields()[i].name;
    }
}

TEST(Layout, TextHasALineForEachFieldAndReservedArea) {
    const std::string text = layoutText();
    EXPECT_THAT(text, HasSubstr("\n  1831  0x0727    101    100  char[101]  szFixedDrives "));
    EXPECT_THAT(text, HasSubstr("\n  4868  0x1304      4      -  uint32     dwSessionId "));
    const auto& reserved = kvtest::RecordPlace::reserved();
    for (const kvtest::RecordPlace& area : reserved)
        EXPECT_THAT(text, ContainsRegex("\n *" + std::to_string(area.offset) + "  " + hexOffset(area.offset) + " +" +
                                        std::to_string(area.width) + "      -  char\\[" + std::to_string(area.width) +
                                        "\\] +reserved" + std::to_string(area.offset) + " "));
    EXPECT_THAT(text, HasSubstr("\n   358  0x0166      2      -  char[2]    reserved358 "));
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(text, '\n')), 1 + fields().size() + reserved.size());
}

TEST(Layout, JsonHasAnObjectForEachField) {
    const auto json = nlohmann::json::parse(layoutJson());
    ASSERT_EQ(json.size(), fields().size());
    EXPECT_EQ(json[0]["name"], "szStation");
    EXPECT_EQ(json[0]["limit"], 50);
    EXPECT_EQ(json[3]["name"], "dwKeyboardType");
    EXPECT_EQ(json[3]["hex"], "0x0168");
    EXPECT_FALSE(json[3].contains("limit"));
}

// Its last column is what experiments find, which a test of the real library holds.
TEST(Layout, TheDocumentHasARowForEachFieldAndReservedArea) {
    const std::vector<std::string> document = linesOf(readFile(KV_RECORD_DOCUMENT, 1024 * 1024));
    for (const std::string& row : linesOf(layoutMarkdown()))
        EXPECT_TRUE(std::ranges::any_of(document, [&](const std::string& line) { return line.starts_with(row); }))
            << row << " is missing: ./kv docs makes the document anew";
}

TEST(Layout, TheSchemaOfRowsIsThatOfTheDocuments) {
    EXPECT_EQ(readFile(KV_ROW_SCHEMA, 1024 * 1024), rowSchema()) << "./kv docs makes it anew";
}

TEST(Layout, NoTextBreaksTheDocumentsTable) {
    for (const Field& field : fields())
        for (const std::string_view text : {field.group, field.meaning})
            EXPECT_EQ(text.find_first_of("|\n<>`*_"), std::string_view::npos) << field.name << ": " << text;
}

}  // namespace
}  // namespace kvstation
