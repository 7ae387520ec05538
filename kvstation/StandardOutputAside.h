// Standard output belongs to the result alone, and the module writes to it too: while this object lives, that goes
// nowhere.
#pragma once

namespace kvstation {

class StandardOutputAside {
  public:
    StandardOutputAside();
    StandardOutputAside(const StandardOutputAside&) = delete;
    StandardOutputAside& operator=(const StandardOutputAside&) = delete;
    ~StandardOutputAside();

  private:
    int m_kept;
};

}  // namespace kvstation
