// The real kvcstat64.dll beside the tool, loaded for the object's life. Windows only.
#pragma once

#include "framework/Windows.h"
#include "kvstation/Record.h"

namespace kvstation {

class Library {
  public:
    // Throws Failure in one line that tells what is wrong with the file, or with those that it needs.
    Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library();

    // Fills a record that was cleared.
    void getStationData(RecordBytes& record) const { m_getStationData(record.data()); }

    HMODULE handle() const { return m_module; }

  private:
    using GetStationDataFunction = void(__cdecl*)(char*);

    HMODULE m_module;
    GetStationDataFunction m_getStationData;
};

}  // namespace kvstation
