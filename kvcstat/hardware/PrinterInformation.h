#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// One printer.
class CPrinterInformation : public CObject {
  public:
    // Reads "Name", "Printer Driver" and "Port" from the printer's open key.
    explicit CPrinterInformation(HKEY key);
    // A printer of which only the name is known.
    explicit CPrinterInformation(const char* name) : m_cName(name) {}
    ~CPrinterInformation() override = default;

    CString m_cPrinterDriver;
    CString m_cName;
    CString m_cPort;
};
