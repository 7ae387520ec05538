// The readers of described stations: whatever the files hold, a station or one line that says what is wrong.
#include <cstdint>
#include <span>
#include <string_view>

#include "simwin/CodePage.h"
#include "simwin/RegistryReader.h"
#include "simwin/StationReader.h"
#include "tests/fuzz/Check.h"

namespace {

template <class Read>
void readOrTell(std::string_view fileName, const Read& read) {
    try {
        read();
    } catch (const simwin::ReadError& error) {
        const std::string_view line = error.what();
        kvfuzz::check(line.starts_with(fileName), "the error names the file");
        kvfuzz::check(line.find('\n') == std::string_view::npos, "the error is one line");
    }
}

}  // namespace

// The first byte says which of the two readers it is, and in which code page.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::string_view content(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::span<const unsigned> pages = simwin::knownCodePages();
    const simwin::CodePageScope scope(data[0] < 2 ? simwin::kDefaultCodePage : pages[data[0] / 2 % pages.size()]);
    if (data[0] % 2 == 0)
        readOrTell("registry.reg", [&] { simwin::readRegistry(content, "registry.reg"); });
    else
        readOrTell("station.json", [&] { simwin::parseStation(content, "station.json"); });
    return 0;
}
