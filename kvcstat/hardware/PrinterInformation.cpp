#include "kvcstat/hardware/PrinterInformation.h"

#include "kvcstat/common/StatGlobal.h"

CPrinterInformation::CPrinterInformation(HKEY key) {
    const CStatGlobal global;
    global.GetRegString(key, "Name", m_cName);
    global.GetRegString(key, "Printer Driver", m_cPrinterDriver);
    global.GetRegString(key, "Port", m_cPort);
}
