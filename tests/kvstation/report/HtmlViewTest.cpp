#include "kvstation/report/HtmlView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "kvstation/report/HtmlStyle.h"
#include "kvstation/report/HtmlText.h"
#include "tests/kvstation/Samples.h"

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
    EXPECT_THAT(html, HasSubstr("<dt>User name</dt><dd class=\"main\">jdoe</dd></div>"));
    EXPECT_THAT(html, HasSubstr("<dt>IP address</dt><dd class=\"main\">10.0.0.5</dd></div>"));
    EXPECT_THAT(html, HasSubstr("<dt>Windows</dt><dd class=\"main\">Windows 11</dd>"
                                "<dd><span>Operating system</span> Windows NT 10.0 (Build 22621)</dd></div>"));
    EXPECT_THAT(html, HasSubstr("<dd><span>Number</span> 4294967294</dd>"));
}

TEST(HtmlView, EveryLineOfACardIsNamed) {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szMACAddress, "005056AB12CD");
    put(bytes, &STATIONDATA::szDnsName, "10.0.0.5");
    EXPECT_THAT(page(bytes), HasSubstr("<dt>MAC address</dt><dd class=\"main\">00-50-56-AB-12-CD</dd>"
                                       "<dd><span>DNS name</span> 10.0.0.5</dd></div>"));
}

TEST(HtmlView, TellsWhichStationItIsAndWhenAndByWhatItWasCollected) {
    Report report;
    report.description = "the <till> in hall 3";
    report.collected = {.at = "2026-11-22T12:04:37Z", .library = "1.2.0.0", .tool = "1.2.0"};
    EXPECT_THAT(htmlView(report),
                HasSubstr("<p>the &lt;till&gt; in hall 3</p>\n<p>Collected <time datetime=\"2026-11-22T12:04:37Z\">"
                          "2026-11-22 12:04:37 UTC</time> by kvcstat64.dll 1.2.0.0 and kvstation 1.2.0</p>"));
    report.collected = {.at = "2026-11-22T12:04:37Z", .library = {}, .tool = "1.2.0"};
    EXPECT_THAT(htmlView(report), HasSubstr(" UTC</time> by kvstation 1.2.0</p>"));
    report.collected = simwin::Collected();
    EXPECT_THAT(htmlView(report), HasSubstr("<p>Collected at an unknown time</p>"));
    report.collected.reset();
    EXPECT_THAT(htmlView(report), HasSubstr("<p>When and by which version it was collected is not known</p>"));
}

TEST(HtmlView, CountsTheFieldsThatAreFilled) {
    const std::string html = page(sampleBytes());
    EXPECT_THAT(html, HasSubstr("<p>Windows 11, workstation record, 7 of " + std::to_string(fields().size()) +
                                " fields filled</p>"));
    const auto ofGroup = [](std::string_view group) {
        return " of " + std::to_string(std::ranges::count(fields(), group, &Field::group)) + " fields</small></h2>";
    };
    EXPECT_THAT(html, HasSubstr("System<small>1" + ofGroup("System")));
    EXPECT_THAT(html, HasSubstr("Software<small>0" + ofGroup("Software")));
}

TEST(HtmlView, CountsTheBytesOfATextAgainstWhatItMayHave) {
    RecordBytes bytes = sampleBytes();
    EXPECT_THAT(page(bytes), HasSubstr("<small>0x0000, 7 of 50 bytes</small>"));
    put(bytes, &STATIONDATA::szStation, std::string(51, 'W'));
    EXPECT_THAT(page(bytes), HasSubstr("<small>0x0000, 51 of 51 bytes</small>")) << "not written by the module";
    EXPECT_THAT(page(bytes), HasSubstr("<small>0x016C, 4 bytes</small>"));
}

TEST(HtmlView, ListsHaveALineForEachItemAndOtherTextsAreNone) {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szPrinters, "HP LaserJet;Plotter");
    put(bytes, &STATIONDATA::szMonitor, "@oem7.inf,%vdmon%;Virtual Display");
    const std::string html = page(bytes);
    EXPECT_THAT(html, HasSubstr(">HP LaserJet;\nPlotter<"));
    EXPECT_THAT(html, HasSubstr(">@oem7.inf,%vdmon%;Virtual Display<"));
}

TEST(HtmlView, TellsNoPathOfTheComputerThatMadeIt) {
    Report report;
    const auto footOf = [&](const char* origin) {
        report.origin = origin;
        const std::string html = htmlView(report);
        const std::string foot = html.substr(html.find("<footer>") + 8);
        return foot.substr(0, foot.find(" made by"));
    };
    EXPECT_EQ(footOf("this station"), "Record of this station, page");
    EXPECT_EQ(footOf("/home/jdoe/customers/till-3/"), "Record of till-3, page");
    EXPECT_EQ(footOf("C:\\Users\\jdoe\\station.bin"), "Record of station.bin, page");
    for (const char* unnamed : {"", "/", ".", "..", "../..", "C:\\Users\\."})
        EXPECT_EQ(footOf(unnamed), "Page") << unnamed;
}

TEST(HtmlView, TheStationsNameBreaksBehindItsParts) {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szStation, "PC<3.LAB.\xE9");
    EXPECT_THAT(page(bytes), HasSubstr("<h1>PC&lt;3.<wbr>LAB.<wbr>\xC3\xA9</h1>\n<p>"));
}

TEST(HtmlView, AnEmptyRecordIsAPageToo) {
    const std::string html = htmlView({.record = Record(RecordBytes{}), .bytes = {}, .product = {}, .origin = "x"});
    EXPECT_THAT(html, HasSubstr("<h1>Unnamed station</h1>"));
    EXPECT_THAT(html, HasSubstr("<dt>User's display name</dt><dd class=\"main\">unknown</dd>"));
}

TEST(HtmlView, EveryGroupOfTheFieldsIsShownInAColour) {
    const std::string html = page(RecordBytes{});
    for (const Field& field : fields()) {
        EXPECT_NE(std::ranges::find(groups(), field.group, &Group::name), groups().end()) << field.group;
        EXPECT_THAT(html, HasSubstr("." + groupClass(field.group) + " { --hue: "));
        EXPECT_THAT(html, HasSubstr("<section class=\"" + groupClass(field.group) + "\">"));
    }
    std::set<int> hues;
    for (const Group& group : groups())
        EXPECT_TRUE(hues.insert(group.hue).second) << group.name;
}

TEST(HtmlView, DrivesAreBars) {
    const std::string html = page(sampleBytes());
    EXPECT_THAT(html, HasSubstr("C: SYSTEM</strong><span>NTFS 149.0 GB, 41% free</span>"));
    EXPECT_THAT(html, HasSubstr("aria-label=\"59% used\"><b style=\"width:59%\">"));
    EXPECT_THAT(html, HasSubstr("E: </strong><span>FAT32 4.0 GB, 12% free</span>"));
}

TEST(HtmlView, ADriveOfUnknownSizeHasNoBar) {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szFixedDrives, "D(TEMP):(FAT:0 MB -2147483648% free) ;E:(:0 MB -2147483648% free) ");
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
