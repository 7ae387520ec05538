#include "kvstation/report/RecordFile.h"

#include <algorithm>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/record/ProductName.h"
#include "kvstation/report/JsonView.h"
#include "simwin/text/Utf16.h"

namespace kvstation {
namespace {

// A record as the module needs it, or a caller's whole structure, which the compiler rounds up.
bool isRawSize(std::size_t size) {
    return size == KVCSTAT_RECORD_SIZE || size == sizeof(STATIONDATA);
}

// JSON has no zero bytes, and a raw record has no room to be without.
bool isJson(std::string_view bytes) {
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && bytes[first] == '{' && bytes.find('\0') == std::string_view::npos;
}

Report fromRaw(std::string_view bytes) {
    RecordBytes raw{};
    std::copy_n(bytes.begin(), raw.size(), raw.begin());
    return {.record = Record(raw), .bytes = raw, .product = {}, .origin = {}};
}

}  // namespace

std::string utf8Text(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        return simwin::utf8FromUtf16(
            simwin::utf16FromBytes(bytes.substr(2), bytes.front() == '\xFE' ? std::endian::big : std::endian::little));
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    return std::string(bytes);
}

Report recordFromFileBytes(std::string_view bytes, const std::string& name) {
    const std::string text = utf8Text(bytes);
    Report report;
    if (isJson(text))
        report = recordFromJson(text, name);
    else if (isRawSize(bytes.size()))
        report = fromRaw(bytes);
    else
        throw Failure(name + " is no station record: it is no JSON object and has " + std::to_string(bytes.size()) +
                      " bytes, where a raw record has " + std::to_string(KVCSTAT_RECORD_SIZE));
    if (const auto version = versionFromDescription(report.record.at("szOS").text))
        report.product = productNameOfTold(*version);
    report.origin = name;
    return report;
}

Report readRecordFile(const std::string& path) {
    return recordFromFileBytes(readFile(path, kLongestRecordFile), path);
}

}  // namespace kvstation
