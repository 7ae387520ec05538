// Physical memory and virtual address space.
#include "kvcstat/hardware/HardwareInformation.h"
#include "kvcstat/hardware/Truncation.h"

namespace {

DWORD RoundedMegabytes(SIZE_T bytes) {
    return TruncateToUInt32(static_cast<double>(bytes) / 1048576.0 + 0.5);
}

}  // namespace

int CHardwareInformation::GetMemory() {
    MEMORYSTATUS status = {};
    status.dwLength = sizeof status;
    GlobalMemoryStatus(&status);
    m_nTotalMemoryMB = RoundedMegabytes(status.dwTotalPhys);
    // What the firmware keeps for itself makes the number odd; the installed memory never is.
    if (m_nTotalMemoryMB % 2 != 0)
        ++m_nTotalMemoryMB;
    m_nVirtualMemoryMB = RoundedMegabytes(status.dwTotalVirtual);
    return 0;
}
