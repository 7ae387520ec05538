#include "kvstation/HtmlView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Samples.h"
#include "kvstation/HtmlText.h"

namespace kvstation {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string page(const RecordBytes& bytes) {
    return htmlView({.record = Record(bytes), .bytes = bytes, .product = "Windows 11", .origin = "a <test>"});
}

std::size_t occurrences(const std::string& text, const std::string& word) {
    std::size_t count = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        ++count;
    return count;
}

TEST(HtmlView, StandsOnItsOwn) {
    const std::string html = page(sampleBytes());
    for (const char* foreign : {"<script", "<link", "<img", "<iframe", " src=", "url(", "http:", "https:", "@import"})
        EXPECT_THAT(html, Not(HasSubstr(foreign)));
}

TEST(HtmlView, BeginsWithTheStationAtAGlance) {
    const std::string html = page(sampleBytes());
    EXPECT_THAT(html, HasSubstr("<title>PC-LAB3 - station record</title>"));
    EXPECT_THAT(html, HasSubstr("<h1>PC-LAB3</h1>"));
    EXPECT_THAT(html, HasSubstr("<dt>User</dt><dd class=\"main\">jdoe</dd>"));
    EXPECT_THAT(html, HasSubstr("<dt>Address</dt><dd class=\"main\">10.0.0.5</dd>"));
    EXPECT_THAT(html, HasSubstr("<dt>Windows</dt><dd class=\"main\">Windows 11</dd>"));
    EXPECT_THAT(html, HasSubstr("<dd>session 4294967294</dd>"));
}

TEST(HtmlView, TheStationsNameBreaksBehindItsParts) {
    RecordBytes bytes{};
    put(bytes, 0, "PC<3.LAB.\xE9");
    EXPECT_THAT(page(bytes), HasSubstr("<h1>PC&lt;3.<wbr>LAB.<wbr>\xC3\xA9</h1>\n<p>"));
}

TEST(HtmlView, AnEmptyRecordIsAPageToo) {
    const std::string html = htmlView({.record = Record(RecordBytes{}), .bytes = {}, .product = {}, .origin = "x"});
    EXPECT_THAT(html, HasSubstr("<h1>Unnamed station</h1>"));
    EXPECT_THAT(html, HasSubstr("<dt>User</dt><dd class=\"main\">unknown</dd>"));
}

TEST(HtmlView, DrivesAreBars) {
    const std::string html = page(sampleBytes());
    EXPECT_THAT(html, HasSubstr("C: SYSTEM</strong><span>NTFS 149.0 GB, 41% free</span>"));
    EXPECT_THAT(html, HasSubstr("aria-label=\"59% used\"><b style=\"width:59%\">"));
    EXPECT_THAT(html, HasSubstr("E: </strong><span>FAT32 4.0 GB, 12% free</span>"));
}

TEST(HtmlView, ADriveOfUnknownSizeHasNoBar) {
    RecordBytes bytes{};
    put(bytes, 1831, "D(TEMP):(FAT:0 MB -2147483648% free) ;E:(:0 MB -2147483648% free) ");
    const std::string html = page(bytes);
    EXPECT_THAT(html, HasSubstr("D: TEMP</strong><span>FAT, size unknown</span></p></li>"));
    EXPECT_THAT(html, HasSubstr("E: </strong><span>size unknown</span></p></li>"));
}

TEST(HtmlView, EveryFieldHasItsRowAndItsPlaceOnTheMap) {
    const std::string html = page(sampleBytes());
    for (const Field& field : fields()) {
        EXPECT_EQ(occurrences(html, " id=\"" + std::string(field.name) + "\""), 1u) << field.name;
        EXPECT_EQ(occurrences(html, "href=\"#" + std::string(field.name) + "\""), 1u) << field.name;
    }
    // szStation stands in row 0 with 7 of its 51 bytes filled, szUserName behind it goes on in the rows below.
    EXPECT_THAT(html, HasSubstr("<rect class=\"empty\" x=\"9\" y=\"0\" width=\"51\" height=\"2.2\"/>"
                                "<rect class=\"filled\" x=\"9\" y=\"0\" width=\"7\" height=\"2.2\"/>"));
    EXPECT_THAT(html, HasSubstr("<rect class=\"empty\" x=\"60\" y=\"0\" width=\"77\" height=\"2.2\"/>"
                                "<rect class=\"empty\" x=\"9\" y=\"2.6\" width=\"128\" height=\"2.2\"/>"
                                "<rect class=\"empty\" x=\"9\" y=\"5.2\" width=\"51\" height=\"2.2\"/>"));
}

TEST(HtmlView, TextIsNeverMarkup) {
    const std::string attack = "</code><script>alert(1)</script>\"'&";
    RecordBytes bytes{};
    for (const Field& field : fields())
        if (field.type == FieldType::Text)
            put(bytes, field.offset, attack.substr(0, field.limit));
    const std::string html = page(bytes);
    EXPECT_THAT(html, Not(HasSubstr("<script")));
    EXPECT_THAT(html, HasSubstr("&lt;/code&gt;&lt;script&gt;alert(1)&lt;/script&gt;&quot;&#39;&amp;"));
    EXPECT_THAT(html, HasSubstr("Record of a &lt;test&gt;"));
}

TEST(HtmlView, ControlCharactersAreSpelledOut) {
    EXPECT_EQ(escapeHtml("a\x01<\x1b"), "a\\x01&lt;\\x1b");
}

}  // namespace
}  // namespace kvstation
