// Where the suite runs: the arrangement made, and what differs between a real Windows and the simulated one.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/Windows.h"
#include "tests/conformance/Check.h"

namespace conformance {

class World {
  public:
    // Of a station with this ANSI code page; 0: what there is, which is 1252 on the simulated one. A Windows has the
    // one that it has.
    //
    // Makes the arrangement: a key below HKEY_CURRENT_USER\Software, which no reboot keeps, and a folder in the
    // temporary one, each named kvconform- and the process's number. Those of a process that ended without removing
    // them are removed first. Throws std::runtime_error with one line when something cannot be made; then nothing is
    // left.
    explicit World(UINT ansiCodePage);
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World();

    Platform platform() const;
    // "Windows 10.0.19045", "Wine 8.0 (Windows 6.1.7601)" or "simwin".
    std::string platformText() const;

    // The path below HKEY_CURRENT_USER of the suite's own key, or of one below it.
    std::string key(std::string_view below = {}) const;
    // The full path of the suite's own folder, or of a file below it.
    std::string folder(std::string_view below = {}) const;
    // A root such as "C:\", that of the folder's drive; and one of a drive that is not there.
    std::string driveRoot() const;
    std::string missingRoot() const;

    void setLastError(DWORD error);
    UINT ansiCodePage() const;
    // What the trace library wrote so far: "2 Component: text" for each line.
    std::vector<std::string> traced() const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace conformance
