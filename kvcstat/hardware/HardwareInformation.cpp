#include "kvcstat/hardware/HardwareInformation.h"

#include "kvcstat/common/StatGlobal.h"

CHardwareInformation::CHardwareInformation(COSInformation* pOSInformation) : m_pOSInformation(pOSInformation) {}

CHardwareInformation::~CHardwareInformation() {
    Reset();
}

int CHardwareInformation::Collect() {
    Reset();
    GetProcessor();
    EnumerateDevices();
    GetDrives();
    GetKeyboard();
    GetPrinters();
    const int status = ClassifyDevices();
    GetProcessorNameFallback();
    return status;
}

// The texts stay: a second collection on one object appends to its lists.
void CHardwareInformation::Reset() {
    const CStatGlobal global;
    m_nRemovableDrives = m_nFixedDrives = m_nRemoteDrives = m_nCDRomDrives = m_nRamDisks = 0;
    global.DeleteObList(m_RemovableDrives);
    global.DeleteObList(m_FixedDrives);
    global.DeleteObList(m_RemoteDrives);
    global.DeleteObList(m_CDRomDrives);
    global.DeleteObList(m_RamDisks);
    m_DeviceMap.DeleteAll();
    global.DeleteObList(m_Printers);
}
