// The real kvcstat64.dll beside the tool, loaded for the object's life. Windows only.
#pragma once

#include <string>

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

    // What the file's version resource tells, such as "1.2.0.0"; empty where it tells nothing. The file need not load.
    static std::string version();

    HMODULE handle() const { return m_module; }

  private:
    using GetStationDataFunction = void(__cdecl*)(char*);

    HMODULE m_module;
    GetStationDataFunction m_getStationData;
};

}  // namespace kvstation
