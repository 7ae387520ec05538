// Processors: numbers, clock, identifiers and names.
#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/hardware/HardwareInformation.h"

namespace {

constexpr char kSystemKey[] = "HARDWARE\\DESCRIPTION\\System";

// Windows' PROCESSOR_POWER_INFORMATION, which not every set of headers has.
struct ProcessorPower {
    ULONG number;
    ULONG maxMhz;
    ULONG currentMhz;
    ULONG mhzLimit;
    ULONG maxIdleState;
    ULONG currentIdleState;
};
static_assert(sizeof(ProcessorPower) == 24);

}  // namespace

int CHardwareInformation::GetProcessor() {
    const CStatGlobal global;
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    m_wProcessorArchitecture = system.wProcessorArchitecture;
    m_dwNumberOfProcessors = system.dwNumberOfProcessors;
    m_dwProcessorType = system.dwProcessorType;
    m_dwProcessorLevel = system.wProcessorLevel;
    m_wProcessorRevision = system.wProcessorRevision;
    GetPowerInformation();

    const DWORD platform = global.GetPlatformId();
    if (platform == VER_PLATFORM_WIN32_WINDOWS || platform == VER_PLATFORM_WIN32_NT)
        global.GetRegString(HKEY_LOCAL_MACHINE, kSystemKey, "Identifier", m_cSystemIdentifier);
    if (platform == VER_PLATFORM_WIN32_NT)
        ListProcessors();

    GetBios();
    GetMemory();
    return GetOwner();
}

void CHardwareInformation::GetPowerInformation() {
    using CallNtPowerInformationFunction =
        LONG(WINAPI*)(POWER_INFORMATION_LEVEL level, PVOID input, ULONG inputSize, PVOID output, ULONG outputSize);

    const UniqueLibrary library(LoadLibraryA("powrprof.dll"));
    if (library == nullptr)
        return;
    const auto callPower = FindFunction<CallNtPowerInformationFunction>(library.get(), "CallNtPowerInformation");
    if (callPower == nullptr)
        return;
    // Room for one processor whatever their number: a station with more keeps the clock 0, as it always had.
    ProcessorPower power = {};
    if (callPower(ProcessorInformation, nullptr, 0, &power, sizeof power) == 0)
        m_nCurrentMhz = power.currentMhz;
}

void CHardwareInformation::ListProcessors() {
    // The first processor without a name ends the walk: where none has one, only the first's speed and identifier are
    // kept.
    for (int index = 0; ListProcessor(index); ++index) {
    }
}

bool CHardwareInformation::ListProcessor(int index) {
    const CStatGlobal global;
    CString subKey;
    subKey.Format("%s\\CentralProcessor\\%d", kSystemKey, index);
    const UniqueRegKey key(global.OpenRegKey(HKEY_LOCAL_MACHINE, subKey));

    DWORD mhz = 0;
    if (global.GetRegDWORD(key.get(), "~MHz", mhz) == 0) {
        CString speed;
        speed.Format("%d", static_cast<int>(mhz));
        global.AppendString(m_cProcessorSpeed, speed, ";");
    }
    CString identifier;
    if (global.GetRegString(key.get(), "Identifier", identifier) == 0)
        global.AppendString(m_cProcessorIdentifier, identifier, ";");
    CString name;
    if (global.GetRegString(key.get(), "ProcessorNameString", name) != 0)
        return false;
    global.AppendString(m_cProcessorName, name.Trim(), ";");
    return true;
}
