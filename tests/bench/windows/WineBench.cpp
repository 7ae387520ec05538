// wine_bench FOLDER: prints what loading the library and running the tool cost, beside a library and a program that do
// nothing, which are in FOLDER. It is started in the folder of the release files, where Windows then finds what both
// libraries import.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "framework/Windows.h"
#include "tests/bench/windows/Timing.h"

// Windows.h first: this header needs its types.
#include <psapi.h>

namespace {

using kvbench::median;
using kvbench::now;

constexpr int kLoads = 200;
constexpr int kProcesses = 25;

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "wine_bench: %s: error %lu\n", what.c_str(), GetLastError());
    ExitProcess(1);
}

// The whole path, with a backslash at its end.
std::string folder(const char* path) {
    char whole[MAX_PATH] = {};
    GetFullPathNameA(path, sizeof whole, whole, nullptr);
    return std::string(whole) + '\\';
}

double timeLoad(const std::string& path) {
    const double start = now();
    const HMODULE library = LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (library == nullptr)
        fail(path);
    FreeLibrary(library);
    return now() - start;
}

std::size_t privateBytes(HANDLE process) {
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(process, &counters, sizeof counters);
    return counters.PagefileUsage;
}

struct Process {
    // cppcheck-suppress passedByValue ; Windows writes into it
    explicit Process(std::string commandLine) {
        STARTUPINFOA startup = {};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info))
            fail(commandLine);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() {
        CloseHandle(info.hThread);
        CloseHandle(info.hProcess);
    }
    bool ends(DWORD milliseconds) const { return WaitForSingleObject(info.hProcess, milliseconds) == WAIT_OBJECT_0; }

    PROCESS_INFORMATION info = {};
};

double timeProcess(const std::string& commandLine) {
    const double start = now();
    const Process process(commandLine);
    process.ends(INFINITE);
    return now() - start;
}

// The most that was seen, looking again and again.
std::size_t mostPrivateBytes(const std::string& commandLine) {
    const Process process(commandLine);
    std::size_t most = 0;
    while (!process.ends(0))
        most = std::max(most, privateBytes(process.info.hProcess));
    return most;
}

void benchLoad(const std::string& library, const std::string& idle) {
    std::vector<double> real;
    std::vector<double> nothing;
    // By turns, so that a disturbance hits both.
    for (int i = 0; i < kLoads; ++i) {
        real.push_back(timeLoad(library));
        nothing.push_back(timeLoad(idle));
    }
    std::printf("load and unload: kvcstat64.dll %.0f us, idle library %.0f us, ratio %.3f\n", median(real),
                median(nothing), median(real) / median(nothing));
}

void benchMemory(const std::string& library) {
    WIN32_FILE_ATTRIBUTE_DATA file = {};
    GetFileAttributesExA(library.c_str(), GetFileExInfoStandard, &file);
    const std::size_t before = privateBytes(GetCurrentProcess());
    if (LoadLibraryExA(library.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH) == nullptr)
        fail(library);
    const std::size_t after = privateBytes(GetCurrentProcess());
    std::printf("kvcstat64.dll: file %lu bytes, private bytes %zu KiB with what it imports\n", file.nFileSizeLow,
                (after - before) / 1024);
}

double mebibytes(std::size_t bytes) {
    return static_cast<double>(bytes) / (1 << 20);
}

// `bare` is a program that loads the library, calls it once and prints the record.
void benchProcess(const std::string& tool, const std::string& bare, const std::string& empty) {
    std::vector<double> whole;
    std::vector<double> least;
    std::vector<double> nothing;
    timeProcess(tool);
    // By turns, so that a disturbance hits all.
    for (int i = 0; i < kProcesses; ++i) {
        whole.push_back(timeProcess(tool));
        least.push_back(timeProcess(bare));
        nothing.push_back(timeProcess(empty));
    }
    std::printf("whole process: kvstation show --json %.1f ms, bare program %.1f ms, ratio %.2f\n",
                median(whole) / 1000, median(least) / 1000, median(whole) / median(least));
    std::printf("               empty program %.1f ms: kvstation takes %.2f times that, the bare program %.2f\n",
                median(nothing) / 1000, median(whole) / median(nothing), median(least) / median(nothing));
    const double toolBytes = mebibytes(mostPrivateBytes(tool));
    const double bareBytes = mebibytes(mostPrivateBytes(bare));
    std::printf(
        "private bytes: kvstation show --json %.2f MiB, bare program %.2f MiB, ratio %.2f, empty program %.2f MiB\n",
        toolBytes, bareBytes, toolBytes / bareBytes, mebibytes(mostPrivateBytes(empty)));
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fputs("wine_bench: which folder?\n", stderr);
        return 2;
    }
    const std::string release = folder(".");
    const std::string bench = folder(arguments[1]);
    benchMemory(release + "kvcstat64.dll");
    benchProcess("\"" + release + "kvstation.exe\" show --json", "\"" + bench + "bare_collection.exe\"",
                 "\"" + bench + "empty_program.exe\"");
    // The first look loads for good what the libraries import, so that loads are timed warm.
    FreeLibrary(GetModuleHandleA("kvcstat64.dll"));
    benchLoad(release + "kvcstat64.dll", bench + "idle_module.dll");
    return 0;
}
