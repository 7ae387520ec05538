// A process of the tool that does a part of another one's work.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kvstation {

// This process was started as such a part: standard input and output belong to the one that did.
bool isPart();

// From now on a crash ends this process with the exception's code, at once: no message box, no debugger. Windows alone
// has these.
void endQuietlyInACrash();

// How many processors there are for this process; at least 1.
unsigned processors();

class PartProcess {
  public:
    // The same program with the same command line; isPart() is true there. Throws Failure.
    PartProcess();
    PartProcess(const PartProcess&) = delete;
    PartProcess& operator=(const PartProcess&) = delete;
    // Closes its standard input and output, and waits for its end.
    ~PartProcess();

    // To its standard input. False: it has ended.
    bool write(std::string_view bytes);
    // From its standard output, waiting for the first byte. 0: it has closed that.
    std::size_t read(char* bytes, std::size_t size);
    // Waits for its end, and tells that: "status 3", "signal 11".
    std::string ending();

  private:
    struct Started;
    std::unique_ptr<Started> m_started;
};

}  // namespace kvstation
