#include "kvstation/report/TextView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kvstation/text/VisibleText.h"
#include "tests/kvstation/Samples.h"

namespace kvstation {
namespace {

using testing::HasSubstr;
using testing::Not;

Report sampleReport() {
    return {Record(sampleBytes()), sampleBytes(), "Windows 11", "a test"};
}

TEST(TextView, ShowsWhatWasFoundInItsGroups) {
    const std::string expected =
        "Station\n"
        "  szStation               PC-LAB3\n"
        "\n"
        "User\n"
        "  szUserName              jdoe\n"
        "\n"
        "System\n"
        "  szOS                    Windows NT 10.0 (Build 22621) (Windows 11)\n"
        "\n"
        "Session\n"
        "  dwSessionId             4294967294\n"
        "\n"
        "Network\n"
        "  szIPAddress             10.0.0.5\n"
        "\n"
        "Drives\n"
        "  szFixedDrives           C(SYSTEM):(NTFS:152625 MB 41% free) ;E:(FAT32:4094 MB 12% free)\n"
        "\n"
        "Hardware\n"
        "  dwOEMCodePage           850\n"
        "\n"
        "Empty or 0: szUserDisplayedName, ";
    EXPECT_THAT(textView(sampleReport(), {}), testing::StartsWith(expected));
}

TEST(TextView, EmptyFieldsAreSaidInTheLastLine) {
    const auto lines = linesOf(textView(sampleReport(), {}));
    EXPECT_THAT(lines.back(), testing::StartsWith("Empty or 0: "));
    EXPECT_THAT(lines.back(), HasSubstr(", szKeyboard, "));
    EXPECT_THAT(lines.back(), HasSubstr(", bNetscape, "));
    EXPECT_THAT(lines.back(), Not(HasSubstr("szStation")));
    EXPECT_THAT(lines.back(), Not(HasSubstr("dwSessionId")));
}

TEST(TextView, EveryFieldIsSaidOnce) {
    const std::string text = textView(sampleReport(), {});
    for (const Field& field : fields()) {
        const testing::Matcher<const std::string&> matcher =
            testing::ContainsRegex("[ ]" + std::string(field.name) + "([ ,]|\n|$)");
        EXPECT_THAT(text, matcher) << field.name;
    }
}

TEST(TextView, AllShowsEmptyFieldsInTheirGroups) {
    const std::string text = textView(sampleReport(), {.all = true});
    EXPECT_THAT(text, HasSubstr("\n  szKeyboard              \n"));
    EXPECT_THAT(text, HasSubstr("\n  bNetscape               0\n"));
    EXPECT_THAT(text, Not(HasSubstr("Empty or 0")));
}

TEST(TextView, ColoursOnlyWhenAskedFor) {
    EXPECT_THAT(textView(sampleReport(), {}), Not(HasSubstr("\x1b")));
    EXPECT_THAT(textView(sampleReport(), {.colours = true}), HasSubstr("\x1b[1mStation\x1b[0m\n"));
}

TEST(TextView, ValuesCannotSteerTheTerminal) {
    RecordBytes bytes{};
    put(bytes, &STATIONDATA::szStation, "A\x1b[31m\nB\x9b");
    EXPECT_THAT(textView({Record(bytes), bytes, "", ""}, {}), HasSubstr("A\\x1b[31m\\x0aB\xE2\x80\xBA"));
}

TEST(TextView, LinesKeepToTheTerminalsWidth) {
    RecordBytes bytes = sampleBytes();
    put(bytes, &STATIONDATA::szPrinters, std::string(sizeof(STATIONDATA::szPrinters) - 1, '\xFC'));
    for (const std::size_t width : {46u, 60u, 80u, 200u})
        for (const std::string& line : linesOf(textView({Record(bytes), bytes, "", ""}, {.width = width})))
            EXPECT_LE(columns(line), width) << line;
}

TEST(TextView, WrappedListsBreakBehindAnItem) {
    EXPECT_THAT(textView(sampleReport(), {.width = 80}),
                HasSubstr("C(SYSTEM):(NTFS:152625 MB 41% free) ;\n" + std::string(26, ' ') + "E:(FAT32"));
}

TEST(TextView, ATerminalTooNarrowForValuesIsLeftToWrap) {
    EXPECT_EQ(textView(sampleReport(), {.width = 30}).find("Windows NT 10.0 (Build 22621)\n"), std::string::npos);
    EXPECT_THAT(textView(sampleReport(), {.width = 30}), HasSubstr("Windows NT 10.0 (Build 22621) (Windows 11)"));
}

}  // namespace
}  // namespace kvstation
