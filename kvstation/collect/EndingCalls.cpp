#include "kvstation/collect/EndingCalls.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "kvstation/platform/EndingHandlers.h"
#include "kvstation/platform/Paths.h"

namespace kvstation {
namespace {

void WINAPI exitTold(UINT) {
    EndingHandlers::exitBy(__builtin_return_address(0));
}

BOOL WINAPI terminateTold(HANDLE process, UINT status) {
    if (GetProcessId(process) == GetCurrentProcessId())
        EndingHandlers::exitBy(__builtin_return_address(0));
    return TerminateProcess(process, status);
}

bool isBesideTool(HMODULE module) {
    return pathOf(module).starts_with(besideProgram(""));
}

// Each once.
std::vector<HMODULE> importedBy(HMODULE library) {
    std::vector<HMODULE> modules;
    for (const redirect::Import& import : redirect::importsOf(library)) {
        const HMODULE module = GetModuleHandleA(std::string(import.library).c_str());
        if (module != nullptr && std::ranges::find(modules, module) == modules.end())
            modules.push_back(module);
    }
    return modules;
}

}  // namespace

EndingCalls::EndingCalls(const Library& library) {
    watch(library.handle());
    for (const HMODULE module : importedBy(library.handle()))
        if (isBesideTool(module))
            watch(module);
}

void EndingCalls::watch(HMODULE module) {
    static const std::array<redirect::Replacement, 2> kTold = {
        redirect::Replacement{"KERNEL32.dll", "ExitProcess", 0, reinterpret_cast<const void*>(exitTold)},
        redirect::Replacement{"KERNEL32.dll", "TerminateProcess", 0, reinterpret_cast<const void*>(terminateTold)}};
    m_watched.emplace_back(module, kTold);
}

}  // namespace kvstation
