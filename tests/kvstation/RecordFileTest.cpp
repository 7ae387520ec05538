#include "kvstation/RecordFile.h"

#include <gtest/gtest.h>

#include "Samples.h"
#include "kvstation/Errors.h"
#include "kvstation/JsonView.h"

namespace kvstation {
namespace {

std::string errorOf(std::string_view bytes) {
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
    const std::string json = "\xEF\xBB\xBF \r\n" + jsonView(Record(sampleBytes()));
    const Report report = recordFromFileBytes(json, "a.json");
    EXPECT_EQ(report.record.at("szStation").text, "PC-LAB3");
    EXPECT_FALSE(report.bytes.has_value());
}

TEST(RecordFile, ARawRecordMayBeginLikeJson) {
    RecordBytes bytes = sampleBytes();
    put(bytes, 0, "{\"PC\"}");
    EXPECT_EQ(recordFromFileBytes(asText(bytes), "a.bin").record.at("szStation").text, "{\"PC\"}3");
}

TEST(RecordFile, RefusesEveryOtherSize) {
    const std::string end = " bytes, where a raw record has 4934";
    EXPECT_EQ(errorOf(""), "a.bin is no station record: it is no JSON object and has 0" + end);
    for (const std::size_t size : {1u, 4933u, 4935u, 4937u, 9868u})
        EXPECT_EQ(errorOf(std::string(size, '\0')),
                  "a.bin is no station record: it is no JSON object and has " + std::to_string(size) + end);
}

TEST(RecordFile, AnyBytesOfTheRightSizeAreARecord) {
    for (int byte = 0; byte < 256; ++byte) {
        if (byte == '{')
            continue;
        EXPECT_EQ(errorOf(std::string(4934, static_cast<char>(byte))), "no error") << byte;
    }
}

}  // namespace
}  // namespace kvstation
