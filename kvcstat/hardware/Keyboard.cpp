// The keyboard: its description in the registry, else the name of its type; and the OEM code page.
#include <cstring>
#include <memory>

#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/common/StringIds.h"
#include "kvcstat/hardware/HardwareInformation.h"
#include "kvcstat/hardware/NameTable.h"

namespace {

constexpr NameEntry kKeyboardTypes[] = {
    {1, IDS_KEYBOARD_XT},         {2, IDS_KEYBOARD_OLIVETTI},   {3, IDS_KEYBOARD_AT},       {4, IDS_KEYBOARD_EXTENDED},
    {5, IDS_KEYBOARD_NOKIA_1050}, {6, IDS_KEYBOARD_NOKIA_9140}, {7, IDS_KEYBOARD_JAPANESE},
};

// True, with its description read, when the device is a keyboard; one without a description ends the search too.
bool ReadKeyboard(const char* deviceKey, CString& description) {
    const CStatGlobal global;
    const UniqueRegKey key(global.OpenRegKey(HKEY_LOCAL_MACHINE, deviceKey));
    CString deviceClass;
    global.GetRegString(key.get(), "Class", deviceClass);
    if (deviceClass.MakeLower() != "keyboard")
        return false;
    global.GetRegString(key.get(), "DeviceDesc", description);
    return true;
}

}  // namespace

int CHardwareInformation::GetKeyboard() {
    const CStatGlobal global;
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            FindKeyboard9x();
            break;
        case VER_PLATFORM_WIN32_NT:
            FindKeyboardNT();
            break;
        default:
            break;
    }
    m_nOEMCodePage = GetOEMCP();
    m_nKeyboardType = GetKeyboardType(0);
    m_nKeyboardSubType = GetKeyboardType(1);
    if (m_cKeyboard.IsEmpty())
        m_cKeyboard = NameText(FindName(kKeyboardTypes, static_cast<DWORD>(m_nKeyboardType), kNoName));
    return 0;
}

void CHardwareInformation::FindKeyboard9x() {
    const CStatGlobal global;
    const UniqueRegKey root(global.OpenRegKey(HKEY_LOCAL_MACHINE, "Enum\\Root"));
    CString name;
    for (DWORD index = 0; !(name = global.EnumRegKey(root.get(), index)).IsEmpty(); ++index) {
        if (ReadKeyboard("Enum\\Root\\" + name + "\\0000", m_cKeyboard))
            return;
    }
}

// The components attached to the machine's root. The list may lack its last, empty item: zeros stand behind the data.
void CHardwareInformation::FindKeyboardNT() {
    const CStatGlobal global;
    BYTE* data = nullptr;
    if (global.GetRegBinary(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Enum\\HTREE\\ROOT\\0", "AttachedComponents",
                            data) != 0)
        return;
    const std::unique_ptr<BYTE[]> components(data);
    const char* component = reinterpret_cast<const char*>(components.get());
    for (; *component != '\0'; component += std::strlen(component) + 1) {
        if (ReadKeyboard(CString("SYSTEM\\CurrentControlSet\\Enum\\") + component, m_cKeyboard))
            return;
    }
}
