// call_bench: prints what one GetStationData of the real library costs on this station beside the same calls of Windows
// made bare. It is started in the folder of the release files.
//
// The process heap's calls are not among the bare ones: the library and its companions must share one heap, so that
// nothing stands between them and it. The library's side alone pays for them.
#include <io.h>

#include <cstdio>
#include <vector>

#include "framework/Windows.h"
#include "include/kvcstat.h"
#include "redirect/Redirection.h"
#include "simwin/calls/CallTable.h"
#include "simwin/machine/Machine.h"
#include "simwin/machine/Recording.h"
#include "simwin/machine/Relay.h"
#include "tests/bench/windows/Timing.h"

namespace {

using kvbench::median;
using kvbench::now;

constexpr int kRounds = 101;

using Collect = decltype(&GetStationData);

// The library's imports, watched in place of answered: who answers is Windows.
std::vector<redirect::Replacement> watchedImports(HMODULE library, simwin::Relay& relay) {
    std::vector<redirect::Replacement> watched;
    for (const redirect::Import& import : redirect::importsOf(library)) {
        const simwin::CallEntry* call = simwin::findCall(import.library, import.name, import.ordinal);
        if (call == nullptr || simwin::isHeapCall(call->name))
            continue;
        relay.addFunction(call->name, reinterpret_cast<const void*>(*import.slot));
        watched.push_back({import.library, import.name, import.ordinal, call->address});
    }
    return watched;
}

void recordOneCall(HMODULE library, Collect collect, simwin::Recording& recording) {
    simwin::Relay relay;
    const redirect::Redirection redirection(library, watchedImports(library, relay));
    simwin::Machine machine{simwin::Station()};
    machine.relayTo(&relay);
    machine.record(&recording);
    const simwin::Machine::Scope scope(machine);
    char record[KVCSTAT_RECORD_SIZE] = {};
    collect(record);
}

template <class Work>
double timeOf(const Work& work) {
    const double start = now();
    work();
    return now() - start;
}

void benchCall(HMODULE library, Collect collect, std::FILE* results) {
    char record[KVCSTAT_RECORD_SIZE] = {};
    collect(record);  // what Windows' own libraries load and open once
    simwin::Recording recording(std::make_shared<simwin::Station>());
    recordOneCall(library, collect, recording);
    simwin::Machine machine{simwin::Station()};
    std::vector<double> whole;
    std::vector<double> bare;
    // By turns, so that a disturbance hits both.
    for (int i = 0; i < kRounds; ++i) {
        whole.push_back(timeOf([&] { collect(record); }));
        bare.push_back(timeOf([&] { recording.replay(machine); }));
    }
    std::fprintf(results, "one call: GetStationData %.0f us, its %zu calls of Windows bare %.0f us, ratio %.3f\n",
                 median(whole), recording.size(), median(bare), median(whole) / median(bare));
}

}  // namespace

int main() {
    const HMODULE library = LoadLibraryA("kvcstat64.dll");
    const auto collect = reinterpret_cast<Collect>(
        reinterpret_cast<void (*)()>(library != nullptr ? GetProcAddress(library, "GetStationData") : nullptr));
    if (collect == nullptr) {
        std::fprintf(stderr, "call_bench: kvcstat64.dll: error %lu\n", GetLastError());
        return 1;
    }
    // The library's own line about the MAC address is not the bench's.
    std::FILE* results = _fdopen(_dup(_fileno(stdout)), "w");
    if (results == nullptr || std::freopen("NUL", "w", stdout) == nullptr)
        return 1;
    benchCall(library, collect, results);
    std::fclose(results);
    return 0;
}
