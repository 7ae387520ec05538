// A described station's registry as a real one, in the place of this process's hives.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "redirect/Redirection.h"
#include "simwin/station/Station.h"

namespace conformance {

// Keys below HKEY_CURRENT_USER\Software, which go with this object; while it is entered the hives' handles mean them,
// each the key of its name. One at a time.
class RealRegistry {
  public:
    // What a registry does not tell by itself is taken from the station, which must live as long: the order of
    // keys and values, which Wine keeps sorted in its own ways; keys that are denied; calls that fail.
    explicit RealRegistry(const simwin::Station& station);
    RealRegistry(const RealRegistry&) = delete;
    RealRegistry& operator=(const RealRegistry&) = delete;
    ~RealRegistry();

    // The full path of the key that stands for the hives' parent.
    const std::string& path() const { return m_path; }

    // Makes each key and value of the station. One line for each that no registry can hold: a name of more than 255
    // characters.
    std::vector<std::string> write();
    // Turns the hives to these keys, once they are made.
    void enter();

    // The registry's functions as a library is to call them.
    static const std::vector<redirect::Replacement>& functions();

  private:
    std::string m_path;
    HKEY m_root = nullptr;
};

// The content of a registry file with every key moved below `path`, as Wine's and Windows' regedit read it. The classes
// become those of the local machine.
std::string movedExport(const std::string& content, const std::string& path);

}  // namespace conformance
