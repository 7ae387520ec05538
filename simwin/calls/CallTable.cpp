#include "simwin/calls/CallTable.h"

#include <algorithm>
#include <vector>

#include "simwin/calls/Calls.h"
#include "simwin/text/CodePage.h"

namespace simwin {
namespace {

template <class Function>
const void* addressOf(Function* function) {
    return reinterpret_cast<const void*>(function);
}

const std::vector<CallEntry>& entries() {
    static const std::vector<CallEntry> table = {
#define SIMWIN_CALL(library, name) {library, #name, 0, true, addressOf(sim_##name)},
#define SIMWIN_ORDINAL(library, number, name) {library, #name, number, true, addressOf(sim_##name)},
#define SIMWIN_LOOKUP(library, name) {library, #name, 0, false, addressOf(sim_##name)},
#include "simwin/calls/Calls.inc"
    };
    return table;
}

std::vector<LibraryEntry> collectLibraries() {
    std::vector<LibraryEntry> found;
    for (const CallEntry& call : entries()) {
        const auto same = [&](const LibraryEntry& entry) { return entry.name == call.library; };
        if (std::none_of(found.begin(), found.end(), same))
            found.push_back({call.library, call.imported || call.library == "ntdll.dll"});
    }
    return found;
}

}  // namespace

std::span<const CallEntry> callTable() {
    return entries();
}

const CallEntry* findCall(std::string_view library, std::string_view name) {
    for (const CallEntry& call : entries())
        if (call.ordinal == 0 && call.name == name && equalNoCase(call.library, library))
            return &call;
    return nullptr;
}

const CallEntry* findCall(std::string_view library, std::uint16_t ordinal) {
    for (const CallEntry& call : entries())
        if (call.ordinal == ordinal && ordinal != 0 && equalNoCase(call.library, library))
            return &call;
    return nullptr;
}

const CallEntry* findCall(std::string_view library, std::string_view name, std::uint16_t ordinal) {
    return ordinal != 0 ? findCall(library, ordinal) : findCall(library, name);
}

bool isHeapCall(std::string_view name) {
    return name == "GetProcessHeap" || name == "HeapAlloc" || name == "HeapFree";
}

std::span<const LibraryEntry> libraries() {
    static const std::vector<LibraryEntry> found = collectLibraries();
    return found;
}

std::optional<std::size_t> findLibrary(std::string_view fileName) {
    const std::span<const LibraryEntry> all = libraries();
    for (std::size_t i = 0; i < all.size(); ++i)
        if (equalNoCase(all[i].name, fileName))
            return i;
    return std::nullopt;
}

}  // namespace simwin
