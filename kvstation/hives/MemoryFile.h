// A file in memory alone, for libraries that read files by their names.
#pragma once

#include <string>
#include <string_view>

namespace kvstation {

class MemoryFile {
  public:
    // Throws Failure where there is no room for it; `name` is the one that an error tells.
    MemoryFile(std::string_view bytes, const std::string& name);
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile();

    // To be opened while this lives.
    std::string path() const;

  private:
    int m_file;
};

}  // namespace kvstation
