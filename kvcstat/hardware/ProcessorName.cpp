// The processor's name by its numbers, for systems whose registry does not tell it.
#include "kvcstat/common/StringIds.h"
#include "kvcstat/hardware/HardwareInformation.h"
#include "kvcstat/hardware/NameTable.h"
#include "kvcstat/hardware/RevisionSuffix.h"
#include "kvcstat/os/OSInformation.h"

namespace {

constexpr NameEntry kTypes9x[] = {
    {386, IDS_INTEL_80386}, {486, IDS_INTEL_80486},   {586, IDS_INTEL_PENTIUM},
    {4000, IDS_MIPS_R4000}, {21064, IDS_ALPHA_21064},
};
constexpr NameEntry kIntelLevels[] = {{3, IDS_INTEL_80386}, {4, IDS_INTEL_80486}, {5, IDS_INTEL_PENTIUM}};
constexpr NameEntry kMipsLevels[] = {{4, IDS_MIPS_R4000}};
constexpr NameEntry kAlphaLevels[] = {{21064, IDS_ALPHA_21064}, {21066, IDS_ALPHA_21066}, {21164, IDS_ALPHA_21164}};
constexpr NameEntry kPowerPCLevels[] = {
    {1, IDS_PPC_601},      {3, IDS_PPC_603},      {4, IDS_PPC_604},
    {6, IDS_PPC_603_PLUS}, {9, IDS_PPC_604_PLUS}, {20, IDS_PPC_620},
};

CString NameNT(WORD architecture, DWORD level) {
    switch (architecture) {
        case PROCESSOR_ARCHITECTURE_INTEL:
            // The level stands where one expects the revision. Stations are registered with these names, such as
            // "Intel Pentium(5.0)", so that it stays.
            return NameText(FindName(kIntelLevels, level, IDS_INTEL_PROCESSOR)) + RevisionSuffix(level, level);
        case PROCESSOR_ARCHITECTURE_MIPS:
            return NameText(FindName(kMipsLevels, LOBYTE(level), IDS_MIPS_PROCESSOR));
        case PROCESSOR_ARCHITECTURE_ALPHA:
            return NameText(FindName(kAlphaLevels, level, IDS_ALPHA_PROCESSOR));
        case PROCESSOR_ARCHITECTURE_PPC:
            return NameText(FindName(kPowerPCLevels, level, IDS_PPC_PROCESSOR));
        default:
            return NameText(IDS_UNKNOWN_PROCESSOR);
    }
}

}  // namespace

void CHardwareInformation::GetProcessorNameFallback() {
    if (!m_cProcessorName.IsEmpty())
        return;
    switch (m_pOSInformation->GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            m_cProcessorName = NameText(FindName(kTypes9x, m_dwProcessorType, kNoName));
            break;
        case VER_PLATFORM_WIN32_NT:
            m_cProcessorName = NameNT(m_wProcessorArchitecture, m_dwProcessorLevel);
            break;
        default:
            break;
    }
}
