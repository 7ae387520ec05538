#include "simwin/machine/Libraries.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "simwin/calls/CallTable.h"
#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace simwin {
namespace {

constexpr std::uintptr_t kFirstLibrary = static_cast<std::uintptr_t>(HandleKind::Library) << 28;
constexpr std::uintptr_t kLibrarySpan = 0x10000;
constexpr std::uintptr_t kProgram = 0x400000;  // where a program's own image stands

bool isListed(const std::vector<std::string>& missing, std::string_view item) {
    return std::any_of(missing.begin(), missing.end(),
                       [item](const std::string& one) { return equalNoCase(one, item); });
}

// A library's function is listed with its own letter case, because GetProcAddress heeds it.
bool isFunctionMissing(const Station& station, std::string_view library, std::string_view function) {
    return std::any_of(station.missing.begin(), station.missing.end(), [&](std::string_view one) {
        const std::size_t mark = one.find('!');
        return mark != std::string_view::npos && equalNoCase(one.substr(0, mark), library) &&
               one.substr(mark + 1) == function;
    });
}

bool isInstalled(const Station& station, std::string_view library) {
    if (library == "wfapi64.dll" && !station.citrix)
        return false;
    if (library == "KVVCD32.dll" && !station.vcdVersion)
        return false;
    return !isListed(station.missing, library);
}

// The library that a program means; a name without a point gets ".dll".
std::optional<std::size_t> findNamed(const Machine& machine, const char* fileName) {
    std::string_view name = fileName;
    name.remove_prefix(name.find_last_of("\\/") + 1);
    std::optional<std::size_t> found = findLibrary(name);
    if (!found && name.find('.') == std::string_view::npos)
        found = findLibrary(std::string(name) + ".dll");
    return found && isInstalled(machine.station(), libraries()[*found].name) ? found : std::nullopt;
}

HMODULE notFound(Machine& machine) {
    machine.setLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

HMODULE loadLibrary(Machine& machine, const char* fileName) {
    const std::optional<std::size_t> found = fileName != nullptr ? findNamed(machine, fileName) : std::nullopt;
    if (!found)
        return notFound(machine);
    ++machine.state().libraries.loads[*found];
    return asPointer<HMODULE>(libraryHandle(*found));
}

bool isLoaded(Machine& machine, std::size_t library) {
    return libraries()[library].loadedAtStart || machine.state().libraries.loads[library] != 0;
}

HMODULE moduleHandle(Machine& machine, const char* fileName) {
    if (fileName == nullptr)
        return asPointer<HMODULE>(kProgram);
    const std::optional<std::size_t> found = findNamed(machine, fileName);
    if (!found || !isLoaded(machine, *found))
        return notFound(machine);
    return asPointer<HMODULE>(libraryHandle(*found));
}

BOOL freeLibrary(Machine& machine, HMODULE library) {
    const std::optional<std::size_t> found = findLibraryByHandle(asNumber(library));
    if (found && machine.state().libraries.loads[*found] != 0) {
        --machine.state().libraries.loads[*found];
        return TRUE;
    }
    if (library != nullptr)
        machine.reportMisuse("FreeLibrary", asNumber(library), "is no library that was loaded");
    machine.setLastError(library != nullptr ? ERROR_MOD_NOT_FOUND : ERROR_INVALID_HANDLE);
    return FALSE;
}

bool isOrdinal(const char* name) {
    return asNumber(name) <= 0xFFFF;
}

const CallEntry* findFunction(const Machine& machine, std::string_view library, const char* name) {
    if (isOrdinal(name))
        return findCall(library, static_cast<std::uint16_t>(asNumber(name)));
    return isFunctionMissing(machine.station(), library, name) ? nullptr : findCall(library, std::string_view(name));
}

// A plain pointer, because a function's type loses its calling convention where it is a template's argument.
const void* procAddress(Machine& machine, HMODULE module, const char* name) {
    const std::optional<std::size_t> library = findLibraryByHandle(asNumber(module));
    const bool isThere = library && isLoaded(machine, *library);
    const CallEntry* found = isThere ? findFunction(machine, libraries()[*library].name, name) : nullptr;
    if (found != nullptr)
        return found->address;
    // Null is the program itself, which exports nothing here; another one may have a function of the name.
    if (module == nullptr)
        machine.reportMisuse("GetProcAddress", 0, "is no library");
    machine.setLastError(isThere || module == nullptr ? ERROR_PROC_NOT_FOUND : ERROR_MOD_NOT_FOUND);
    return nullptr;
}

// A function's name, or its ordinal in place of a pointer.
struct FunctionName {
    const char* value;

    struct Kept : KeptNothingOfIt {
        explicit Kept(const char* v) : ordinal(v) {
            if (!isOrdinal(v))
                copy = v;
        }
        const char* ordinal;
        std::optional<std::string> copy;
        const char* argument(ReplayState&) const { return copy ? copy->c_str() : ordinal; }
    };
    const char* raw() const { return value; }
    Fact fact(bool) const { return isOrdinal(value) ? Fact(std::uint64_t{asNumber(value)}) : Fact(std::string(value)); }
    Kept keep(Recording&) const { return Kept(value); }
    void input(std::string& text, Machine&) const {
        if (isOrdinal(value))
            appendNumber(text, static_cast<std::uint64_t>(asNumber(value)));
        else
            appendQuoted(text, value);
    }
    void output(std::string&, Machine&) const {}
};

}  // namespace

std::uintptr_t libraryHandle(std::size_t number) {
    return kFirstLibrary + (number + 1) * kLibrarySpan;
}

std::optional<std::size_t> findLibraryByHandle(std::uintptr_t handle) {
    if (handle <= kFirstLibrary || handle % kLibrarySpan != 0)
        return std::nullopt;
    const std::size_t number = (handle - kFirstLibrary) / kLibrarySpan - 1;
    return number < libraries().size() ? std::optional(number) : std::nullopt;
}

bool LibraryTable::isOpen(std::uintptr_t value) const {
    const std::optional<std::size_t> number = findLibraryByHandle(value);
    return number && loads[*number] != 0;
}

void LibraryTable::tell(std::vector<OpenHandle>& all, const Station&) const {
    for (std::size_t i = 0; i < loads.size(); ++i)
        all.insert(all.end(), loads[i], {HandleKind::Library, libraryHandle(i), std::string(libraries()[i].name)});
}

}  // namespace simwin

HMODULE WINAPI sim_LoadLibraryA(LPCSTR fileName) {
    return makeCall<sim_LoadLibraryA>(
        "LoadLibraryA", failsWithZero(ERROR_MOD_NOT_FOUND),
        [&](Machine& machine) { return loadLibrary(machine, fileName); }, Text{fileName});
}

HMODULE WINAPI sim_GetModuleHandleA(LPCSTR fileName) {
    return makeCall<sim_GetModuleHandleA>(
        "GetModuleHandleA", failsWithZero(ERROR_MOD_NOT_FOUND),
        [&](Machine& machine) { return moduleHandle(machine, fileName); }, Text{fileName});
}

BOOL WINAPI sim_FreeLibrary(HMODULE library) {
    return makeCall<sim_FreeLibrary>(
        "FreeLibrary", kNeverFails, [&](Machine& machine) { return freeLibrary(machine, library); }, Handle{library});
}

FARPROC WINAPI sim_GetProcAddress(HMODULE module, LPCSTR name) {
    const void* address = makeCall<[](HMODULE library, const char* function) {
        return reinterpret_cast<const void*>(sim_GetProcAddress(library, function));
    }>(
        "GetProcAddress", failsWithZero(ERROR_PROC_NOT_FOUND),
        [&](Machine& machine) { return procAddress(machine, module, name); }, Handle{module}, FunctionName{name});
    if (Relay* relay = Machine::current().relay())
        address = relay->watched(asNumber(module), name, address);
    return reinterpret_cast<FARPROC>(asNumber(address));
}
