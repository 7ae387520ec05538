// The real kvcstat64.dll, loaded for the object's life. Windows only.
#pragma once

#include <string>

#include "framework/Windows.h"
#include "kvcstat/common/Handles.h"
#include "kvstation/record/Record.h"

namespace kvstation {

class Library {
  public:
    // Which one a line tells of: the one beside the tool, or one that was named.
    struct File {
        std::string path;
        std::string words;    // "kvcstat64.dll beside the tool"
        std::string absence;  // what is said when it is missing
        std::string name;
    };

    // The one beside the tool. Throws Failure in one line that tells what is wrong with the file, or with those that it
    // needs.
    Library();
    // The one in that file.
    explicit Library(const std::string& path);

    // Fills a record that was cleared.
    void getStationData(RecordBytes& record) const { m_getStationData(record.data()); }

    // What the file's version resource tells, such as "1.2.0.0"; empty where it tells nothing. The file need not load.
    static std::string version();

    HMODULE handle() const { return m_module.get(); }

  private:
    explicit Library(const File& file);

    using GetStationDataFunction = void(__cdecl*)(char*);

    UniqueLibrary m_module;
    GetStationDataFunction m_getStationData;
};

}  // namespace kvstation
