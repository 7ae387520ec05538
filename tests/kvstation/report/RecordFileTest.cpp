#include "kvstation/report/RecordFile.h"

#include <gtest/gtest.h>

#include <utility>

#include "kvstation/platform/Errors.h"
#include "kvstation/report/JsonView.h"
#include "tests/kvstation/Samples.h"

namespace kvstation {
namespace {

std::string fileError(std::string_view bytes) {
    try {
        recordFromFileBytes(bytes, "a.bin");
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "no error";
}

std::string_view asText(const RecordBytes& bytes) {
    return {bytes.data(), bytes.size()};
}

TEST(RecordFile, ReadsRawBytes) {
    const RecordBytes bytes = sampleBytes();
    const Report report = recordFromFileBytes(asText(bytes), "a.bin");
    EXPECT_EQ(report.record.at("szStation").text, "PC-LAB3");
    EXPECT_EQ(report.product, "Windows 11");
    EXPECT_EQ(report.bytes, bytes);
}

TEST(RecordFile, ReadsACallersWholeStructure) {
    const std::string padded = std::string(asText(sampleBytes())) + std::string(2, '\0');
    EXPECT_EQ(recordFromFileBytes(padded, "a.bin").record.at("szIPAddress").text, "10.0.0.5");
}

TEST(RecordFile, ReadsJsonBehindBlanksAndAByteOrderMark) {
    const std::string json = "\xEF\xBB\xBF \r\n" + jsonOf(Record(sampleBytes()));
    const Report report = recordFromFileBytes(json, "a.json");
    EXPECT_EQ(report.record.at("szStation").text, "PC-LAB3");
    EXPECT_FALSE(report.bytes.has_value());
}

std::string asUtf16(std::u16string_view text, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : text)
        for (const int shift : {bigEndian ? 8 : 0, bigEndian ? 0 : 8})
            bytes.push_back(static_cast<char>(unit >> shift & 0xFF));
    return bytes;
}

std::u16string jsonOf(std::u16string_view station) {
    const std::string json = jsonOf(Record(sampleBytes()));
    std::u16string wide(json.begin(), json.end());  // the sample is ASCII
    wide.replace(wide.find(u"PC-LAB3"), 7, station);
    return wide;
}

// As the shell of Windows writes a program's output into a file.
TEST(RecordFile, ReadsJsonInUtf16BehindAByteOrderMark) {
    for (const bool bigEndian : {false, true}) {
        const std::string json = asUtf16(u"\xFEFF" + jsonOf(u"B\u00FCro-\u20AC"), bigEndian);
        const Report report = recordFromFileBytes(json, "a.json");
        EXPECT_EQ(report.record.at("szStation").text, "B\xC3\xBCro-\xE2\x82\xAC");
        EXPECT_EQ(report.product, "Windows 11");
    }
}

TEST(RecordFile, ReadsSurrogatesInPairsAndReplacesHalves) {
    const std::pair<std::u16string_view, const char*> rows[] = {
        {u"\xD83D\xDDA5", "\xF0\x9F\x96\xA5"},  // U+1F5A5
        {u"\xD800\xDC00", "\xF0\x90\x80\x80"},  // the first pair: U+10000
        {u"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"},  // the last one: U+10FFFF
        {u"\xD83Dx", "\xEF\xBF\xBDx"},
        {u"\xDDA5x", "\xEF\xBF\xBDx"},
        {u"\xDDA5\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    for (const auto& [units, text] : rows)
        EXPECT_EQ(recordFromFileBytes(asUtf16(u"\xFEFF" + jsonOf(units), false), "a.json").record.at("szStation").text,
                  text);
}

TEST(RecordFile, RefusesUtf16ThatIsNoJson) {
    const std::string end = " bytes, where a raw record has " + std::to_string(KVCSTAT_RECORD_SIZE);
    EXPECT_EQ(fileError("\xFF\xFE"), "a.bin is no station record: it is no JSON object and has 2" + end);
    EXPECT_EQ(fileError("\xFE\xFF{"), "a.bin is no station record: it is no JSON object and has 3" + end);
    EXPECT_EQ(fileError(asUtf16(u"\xFEFF{", false)), "a.bin: byte 2: this is no JSON");
}

TEST(RecordFile, ARawRecordMayBeginLikeUtf16) {
    for (const char* mark : {"\xFF\xFE{", "\xFE\xFF"}) {
        RecordBytes bytes{};
        put(bytes, &STATIONDATA::szStation, mark);
        EXPECT_EQ(recordFromFileBytes(asText(bytes), "a.bin").bytes, bytes);
    }
}

TEST(RecordFile, ARawRecordMayBeginLikeJson) {
    RecordBytes bytes = sampleBytes();
    put(bytes, &STATIONDATA::szStation, "{\"PC\"}");
    EXPECT_EQ(recordFromFileBytes(asText(bytes), "a.bin").record.at("szStation").text, "{\"PC\"}3");
}

TEST(RecordFile, RefusesEveryOtherSize) {
    constexpr std::size_t kSize = KVCSTAT_RECORD_SIZE;
    const std::string end = " bytes, where a raw record has " + std::to_string(KVCSTAT_RECORD_SIZE);
    EXPECT_EQ(fileError(""), "a.bin is no station record: it is no JSON object and has 0" + end);
    for (const std::size_t size : {std::size_t{1}, kSize - 1, kSize + 1, sizeof(STATIONDATA) + 1, 2 * kSize})
        EXPECT_EQ(fileError(std::string(size, '\0')),
                  "a.bin is no station record: it is no JSON object and has " + std::to_string(size) + end);
}

TEST(RecordFile, AnyBytesOfTheRightSizeAreARecord) {
    for (int byte = 0; byte < 256; ++byte) {
        if (byte == '{')
            continue;
        EXPECT_EQ(fileError(std::string(KVCSTAT_RECORD_SIZE, static_cast<char>(byte))), "no error") << byte;
    }
}

}  // namespace
}  // namespace kvstation
