#include <cstring>
#include <iterator>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"

using namespace simwin;

namespace {

// PROCESSOR_POWER_INFORMATION, which not every set of headers has.
struct PowerRecord {
    ULONG number;
    ULONG maxMhz;
    ULONG currentMhz;
    ULONG mhzLimit;
    ULONG maxIdleState;
    ULONG currentIdleState;
};

constexpr int kProcessorInformation = 11;
constexpr LONG kInvalidParameter = static_cast<LONG>(0xC000000D);
constexpr LONG kBufferTooSmall = static_cast<LONG>(0xC0000023);
constexpr LONG kAccessDenied = static_cast<LONG>(0xC0000022);
constexpr LONG kNotSupported = static_cast<LONG>(0xC00000BB);

SYSTEM_INFO systemInfo(const Station& station) {
    SYSTEM_INFO info{};
    if (!station.processors)
        return info;
    const Processors& processors = *station.processors;
    info.wProcessorArchitecture = processors.architecture;
    info.dwNumberOfProcessors = processors.count;
    info.dwProcessorType = processors.type;
    info.wProcessorLevel = processors.level;
    info.wProcessorRevision = processors.revision;
    return info;
}

MEMORYSTATUS memoryStatus(const Station& station) {
    MEMORYSTATUS status{};
    status.dwLength = sizeof status;
    if (station.memory) {
        status.dwTotalPhys = station.memory->physical;
        status.dwTotalVirtual = station.memory->virtualSize;
    }
    return status;
}

// Only the current clock is described; the other numbers stay 0.
LONG processorPower(Machine& machine, void* output, ULONG size) {
    const std::optional<Processors>& processors = machine.station().processors;
    if (!processors || processors->currentMhz.empty())
        return kNotSupported;
    if (output == nullptr)
        return kInvalidParameter;
    if (size < processors->currentMhz.size() * sizeof(PowerRecord))
        return kBufferTooSmall;
    for (std::size_t i = 0; i < processors->currentMhz.size(); ++i) {
        PowerRecord record{};
        record.number = static_cast<ULONG>(i);
        record.currentMhz = processors->currentMhz[i];
        std::memcpy(static_cast<char*>(output) + i * sizeof record, &record, sizeof record);
    }
    return 0;
}

}  // namespace

void WINAPI sim_GetSystemInfo(LPSYSTEM_INFO info) {
    makeCall<sim_GetSystemInfo>(
        "GetSystemInfo", kNeverFails,
        [&](Machine& machine) {
            if (info != nullptr)
                *info = systemInfo(machine.station());
        },
        Structure{info});
}

void WINAPI sim_GlobalMemoryStatus(LPMEMORYSTATUS status) {
    makeCall<sim_GlobalMemoryStatus>(
        "GlobalMemoryStatus", kNeverFails,
        [&](Machine& machine) {
            if (status != nullptr)
                *status = memoryStatus(machine.station());
        },
        Structure{status});
}

UINT WINAPI sim_GetOEMCP() {
    return makeCall<sim_GetOEMCP>("GetOEMCP", kNeverFails,
                                  [](Machine& machine) -> UINT { return machine.station().codePages.oem; });
}

int WINAPI sim_GetKeyboardType(int kind) {
    return makeCall<sim_GetKeyboardType>(
        "GetKeyboardType", failsWithZero(ERROR_INVALID_PARAMETER),
        [&](Machine& machine) -> int {
            const Keyboard keyboard = machine.station().keyboard.value_or(Keyboard{});
            const auto asked = static_cast<std::size_t>(kind);
            return asked < std::size(kKeyboardNumbers) ? keyboard.*kKeyboardNumbers[asked].number : 0;
        },
        Value{kind});
}

LONG WINAPI sim_CallNtPowerInformation(POWER_INFORMATION_LEVEL level, PVOID input, ULONG inputSize, PVOID output,
                                       ULONG outputSize) {
    return makeCall<sim_CallNtPowerInformation>(
        "CallNtPowerInformation", failsWithCode(static_cast<std::uint32_t>(kAccessDenied)),
        [&](Machine& machine) {
            const bool isRightInput = input == nullptr && inputSize == 0;
            return static_cast<int>(level) == kProcessorInformation && isRightInput
                       ? processorPower(machine, output, outputSize)
                       : kInvalidParameter;
        },
        Value{level}, Bytes{input, inputSize}, Value{inputSize}, ByteBuffer<PVOID>{output, outputSize},
        Value{outputSize});
}
