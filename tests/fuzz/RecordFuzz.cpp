// The tool's reader of record files, and every view of what it read.
#include <cstdint>
#include <span>
#include <string_view>

#include "kvstation/platform/Errors.h"
#include "kvstation/report/HtmlView.h"
#include "kvstation/report/JsonView.h"
#include "kvstation/report/RecordFile.h"
#include "kvstation/report/TextView.h"
#include "simwin/text/CodePage.h"
#include "tests/fuzz/ReadOrTell.h"

namespace {

// JSON keeps every value.
void checkReadsBack(const kvstation::Report& report) {
    const kvstation::Record& record = report.record;
    const kvstation::Report read = kvstation::recordFromJson(kvstation::jsonView(report), "again");
    const kvstation::Record& again = read.record;
    for (std::size_t field = 0; field < kvstation::fields().size(); ++field) {
        kvfuzz::check(record.textOf(field) == again.textOf(field), "a record reads back from its JSON as it was");
        kvfuzz::check(record[field].bytes == again[field].bytes, "and so do its bytes");
    }
    kvfuzz::check(report.collected == read.collected, "and when and by what it was collected");
}

void show(const kvstation::Report& report) {
    checkReadsBack(report);
    kvfuzz::check(!kvstation::textView(report, {.all = true, .colours = false, .width = 60}).empty(), "a text view");
    kvfuzz::check(!kvstation::htmlView(report).empty(), "a page");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The last byte chooses the code page: a raw record has a zero there, and 1252.
    const std::span<const unsigned> pages = simwin::knownCodePages();
    const unsigned char choice = size != 0 ? data[size - 1] : 0;
    const simwin::CodePageScope scope(choice == 0 ? simwin::kDefaultCodePage : pages[choice % pages.size()]);
    kvfuzz::readOrTell<kvstation::Failure>("record", [&] {
        show(kvstation::recordFromFileBytes({reinterpret_cast<const char*>(data), size}, "record"));
    });
    return 0;
}
