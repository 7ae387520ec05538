// The tool started again as a child process, which ends with its parent. Windows only.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "kvstation/Handles.h"

namespace kvstation {

struct ChildOptions {
    std::vector<std::string> words;  // its command line behind the program
    HANDLE memory;                   // inherited
    HANDLE output;                   // its standard output, inherited; null: nowhere
};

class ChildProcess {
  public:
    // Throws Failure.
    explicit ChildProcess(const ChildOptions& options);

    bool endsWithin(std::chrono::seconds limit) const;
    // Its exit status, once it has ended.
    int status() const;
    // Ends it, and waits for that.
    void end() const;

  private:
    OwnedHandle m_job;  // the child is ended with its last handle
    OwnedHandle m_process;
};

}  // namespace kvstation
