#include <algorithm>
#include <cstring>

#include "simwin/answers/Files.h"
#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"
#include "simwin/machine/VersionResource.h"

using namespace simwin;

namespace {

// Windows marks the end of a Unicode resource so; the room behind it is for texts that are asked for in narrow form.
constexpr std::string_view kNarrowMark = "FE2X";

// The version resource of a file; empty, with the last error set, when there is none.
std::string resourceOf(Machine& machine, const char* path) {
    const File* file = findFile(machine.station(), path != nullptr ? path : "");
    std::string resource;
    if (file != nullptr && file->resource)
        resource = *file->resource;
    else if (file != nullptr && file->version)
        resource = makeVersionResource(*file->version);
    if (resource.empty())
        machine.setLastError(file != nullptr ? ERROR_RESOURCE_DATA_NOT_FOUND
                                             : missingFileError(machine.station(), path != nullptr ? path : ""));
    return resource;
}

DWORD versionSize(Machine& machine, const char* path, DWORD* handle) {
    if (handle != nullptr)
        *handle = 0;
    const std::string resource = resourceOf(machine, path);
    return resource.empty() ? 0 : static_cast<DWORD>(resource.size() * 2 + kNarrowMark.size());
}

BOOL readVersion(Machine& machine, const char* path, DWORD size, void* data) {
    const std::string resource = resourceOf(machine, path);
    if (resource.empty())
        return FALSE;
    if (data == nullptr)
        return fail(machine, ERROR_INVALID_DATA);
    const std::size_t length = std::min<std::size_t>(size, resource.size());
    std::memcpy(data, resource.data(), length);
    machine.state().versionBlocks[data] = length;
    if (size - length >= kNarrowMark.size())
        std::memcpy(static_cast<char*>(data) + length, kNarrowMark.data(), kNarrowMark.size());
    return TRUE;
}

// What the block holds that is asked: what readVersion put there, or what was in the memory before. One that came from
// elsewhere has no known size and therefore holds nothing.
std::string_view heldBy(const MachineState& state, const void* data) {
    const auto* memory = static_cast<const char*>(data);
    if (const auto found = state.versionBlocks.find(data); found != state.versionBlocks.end())
        return {memory, found->second};
    for (const auto& [handle, block] : state.globalBlocks.entries())
        if (block.memory != nullptr && block.memory.get() == memory)
            return {memory, block.size};
    return {};
}

// Only the root can be asked for: the resources hold no texts.
BOOL queryValue(Machine& machine, const void* data, const char* subBlock, void** value, UINT* length) {
    const std::string_view block = heldBy(machine.state(), data);
    if (block.empty() || value == nullptr || length == nullptr)
        return fail(machine, ERROR_INVALID_DATA);
    const bool isRoot = subBlock != nullptr && (*subBlock == '\0' || std::strcmp(subBlock, "\\") == 0);
    const std::optional<VersionValue> found = isRoot ? findRootValue(block) : std::nullopt;
    if (!found) {
        *length = 0;
        return fail(machine, ERROR_RESOURCE_TYPE_NOT_FOUND);
    }
    *value = const_cast<char*>(static_cast<const char*>(data)) + found->offset;
    *length = static_cast<UINT>(found->length);
    return TRUE;
}

// The caller's block, which the query of its values takes again.
struct VersionBlock {
    void* place;
    std::size_t size;

    struct Kept {
        void* place;
        std::vector<char> scratch;
        std::size_t slot = Recording::kNoSlot;
        void* argument(ReplayState&) { return place != nullptr ? scratch.data() : nullptr; }
        void finish(Recording& recording, Machine&) {
            if (place != nullptr)
                slot = recording.newSlot(asNumber(place));
        }
        void done(ReplayState& state) {
            if (slot != Recording::kNoSlot)
                state.values[slot] = asNumber(scratch.data());
        }
    };
    void* raw() const { return place; }
    Fact fact(bool succeeded) const {
        return succeeded && place != nullptr
                   ? Fact(std::string(static_cast<const char*>(place), std::min(size, kLongestCopy)))
                   : Fact();
    }
    Kept keep(Recording&) const { return {place, std::vector<char>(std::min(size, kLongestCopy))}; }
    void input(std::string&, Machine&) const {}
    void output(std::string&, Machine&) const {}
};

// Where a call puts the address of a value in a block of the caller's.
struct AddressInBlock {
    void** place;
    const UINT* length;

    struct Kept : KeptNothingOfIt {
        explicit Kept(bool null) : isNull(null) {}
        bool isNull;
        void* scratch = nullptr;
        void** argument(ReplayState&) { return isNull ? nullptr : &scratch; }
    };
    void** raw() const { return place; }
    Fact fact(bool succeeded) const {
        if (!succeeded || place == nullptr || *place == nullptr || length == nullptr)
            return {};
        return std::string(static_cast<const char*>(*place), std::min<std::size_t>(*length, kLongestCopy));
    }
    Kept keep(Recording&) const { return Kept(place == nullptr); }
    void input(std::string&, Machine&) const {}
    void output(std::string&, Machine&) const {}
};

}  // namespace

DWORD WINAPI sim_GetFileVersionInfoSizeA(LPCSTR path, LPDWORD handle) {
    return makeCall<sim_GetFileVersionInfoSizeA>(
        "GetFileVersionInfoSizeA", failsWithZero(ERROR_ACCESS_DENIED),
        [&](Machine& machine) { return versionSize(machine, path, handle); }, Text{path}, Structure{handle});
}

BOOL WINAPI sim_GetFileVersionInfoA(LPCSTR path, DWORD ignored, DWORD size, LPVOID data) {
    // Also before a failure on purpose: another block may have stood at this address.
    Machine::current().state().versionBlocks.erase(data);
    return makeCall<sim_GetFileVersionInfoA>(
        "GetFileVersionInfoA", failsWithZero(ERROR_ACCESS_DENIED),
        [&](Machine& machine) { return readVersion(machine, path, size, data); }, Text{path}, Value{ignored},
        Value{size}, VersionBlock{data, size});
}

BOOL WINAPI sim_VerQueryValueA(LPCVOID data, LPCSTR subBlock, LPVOID* value, PUINT length) {
    return makeCall<sim_VerQueryValueA>(
        "VerQueryValueA", failsWithZero(ERROR_RESOURCE_TYPE_NOT_FOUND),
        [&](Machine& machine) { return queryValue(machine, data, subBlock, value, length); }, Handle{data},
        Text{subBlock}, AddressInBlock{value, length}, Number{length});
}
