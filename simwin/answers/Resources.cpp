#include <algorithm>
#include <iterator>
#include <string_view>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"

using namespace simwin;

namespace {

struct StringEntry {
    UINT id;
    std::string_view text;
};

constexpr StringEntry kStrings[] = {
#define KV_STRING(id, text) {id, text},
#include "kvcstat/common/StringTable.inc"
};

int loadString(Machine& machine, UINT id, char* buffer, int size) {
    if (buffer == nullptr || size < 1)
        return -1;
    const auto* found = std::find_if(std::begin(kStrings), std::end(kStrings),
                                     [id](const StringEntry& entry) { return entry.id == id; });
    if (found == std::end(kStrings))
        machine.setLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    const std::string_view text = found != std::end(kStrings) ? found->text : std::string_view();
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

}  // namespace

int WINAPI sim_LoadStringA(HINSTANCE instance, UINT id, LPSTR buffer, int size) {
    return makeCall<sim_LoadStringA>(
        "LoadStringA", failsWithZero(ERROR_RESOURCE_NAME_NOT_FOUND),
        [&](Machine& machine) { return loadString(machine, id, buffer, size); }, Handle{instance}, Value{id},
        TextBuffer{buffer, static_cast<std::size_t>(std::max(size, 0))}, Value{size});
}
