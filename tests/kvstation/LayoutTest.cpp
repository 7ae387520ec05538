#include "kvstation/report/LayoutTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "kvstation/platform/Files.h"
#include "kvstation/record/FieldTable.h"
#include "kvstation/rows/RowSchema.h"

namespace kvstation {
namespace {

using testing::HasSubstr;

struct Place {
    const char* name;
    std::size_t offset;
    std::size_t width;
    std::size_t limit;
};

// Written down independently of the header and of the table.
constexpr Place kPlaces[] = {
    {"szStation", 0, 51, 50},         {"szUserName", 51, 256, 255},      {"dwKeyboardType", 360, 4, 0},
    {"szDiskDevices", 524, 251, 250}, {"szFixedDrives", 1831, 101, 100}, {"bInternetExplorer", 1992, 4, 0},
    {"szSubnetMask", 2118, 16, 15},   {"szBrowser", 3073, 201, 200},     {"szOS", 3600, 81, 80},
    {"szClientName", 3708, 51, 50},   {"szMACAddress", 4432, 13, 12},    {"szBiosDate", 4597, 11, 10},
    {"dwSessionId", 4868, 4, 0},      {"szRDPClient", 4901, 21, 20},     {"szVCDVersion", 4922, 12, 11},
};

TEST(Layout, FieldsStandAtTheirPlaces) {
    for (const Place& place : kPlaces) {
        const Field& field = fields()[findField(place.name)];
        EXPECT_EQ(field.offset, place.offset) << place.name;
        EXPECT_EQ(field.width, place.width) << place.name;
        EXPECT_EQ(field.limit, place.limit) << place.name;
    }
}

TEST(Layout, TextHasALineForEachFieldAndReservedArea) {
    const std::string text = layoutText();
    EXPECT_THAT(text, HasSubstr("\n  1831  0x0727    101    100  char[101]  szFixedDrives "));
    EXPECT_THAT(text, HasSubstr("\n  4868  0x1304      4      -  uint32     dwSessionId "));
    EXPECT_THAT(text, HasSubstr("\n   358  0x0166      2      -  char[2]    reserved358 "));
    EXPECT_THAT(text, HasSubstr("\n  1983  0x07BF      9      -  char[9]    reserved1983 "));
    EXPECT_THAT(text, HasSubstr("\n  3681  0x0E61     27      -  char[27]   reserved3681 "));
    EXPECT_THAT(text, HasSubstr("\n  4608  0x1200      4      -  char[4]    reserved4608 "));
    EXPECT_EQ(std::ranges::count(text, '\n'), 1 + 60 + 4);
}

TEST(Layout, JsonHasAnObjectForEachField) {
    const auto json = nlohmann::json::parse(layoutJson());
    ASSERT_EQ(json.size(), 60u);
    EXPECT_EQ(json[0]["name"], "szStation");
    EXPECT_EQ(json[0]["limit"], 50);
    EXPECT_EQ(json[3]["name"], "dwKeyboardType");
    EXPECT_EQ(json[3]["hex"], "0x0168");
    EXPECT_FALSE(json[3].contains("limit"));
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
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
