// The tool's reader of record files, and every view of what it read.
#include <cstdint>
#include <string_view>

#include "kvstation/Errors.h"
#include "kvstation/HtmlView.h"
#include "kvstation/JsonView.h"
#include "kvstation/RecordFile.h"
#include "kvstation/TextView.h"
#include "tests/fuzz/Check.h"

namespace {

// JSON keeps every value.
void checkReadsBack(const kvstation::Record& record) {
    const kvstation::Record again = kvstation::recordFromJson(kvstation::jsonView(record), "again");
    for (std::size_t field = 0; field < kvstation::fields().size(); ++field)
        kvfuzz::check(record.textOf(field) == again.textOf(field), "a record reads back from its JSON as it was");
}

void show(const kvstation::Report& report) {
    checkReadsBack(report.record);
    kvfuzz::check(!kvstation::textView(report, {.all = true, .colours = false, .width = 60}).empty(), "a text view");
    kvfuzz::check(!kvstation::htmlView(report).empty(), "a page");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        show(kvstation::recordFromFileBytes({reinterpret_cast<const char*>(data), size}, "record"));
    } catch (const kvstation::Failure& failure) {
        kvfuzz::check(std::string_view(failure.what()).starts_with("record"), "the error names the file");
    }
    return 0;
}
