// What a machine can tell of itself without asking anybody else: the registry, variables and files.
#pragma once

#include <optional>
#include <string>

#include "kvstation/calls/Place.h"
#include "simwin/station/Station.h"

namespace kvstation {

class LocalState {
  public:
    virtual ~LocalState() = default;

    // Copies a key's values and the names of its sub-keys, by the key's full path. False when there is no such key.
    virtual bool copyKey(const std::string& fullPath, simwin::RegistryTree& tree) = 0;
    virtual std::optional<std::string> variable(const std::string& name) = 0;
    // A file or a folder, with the file's version where it tells one.
    virtual std::optional<simwin::File> file(const std::string& path) = 0;

    // False for a place of which the machine tells nothing here, whether something is there or not.
    virtual bool knows(const Place& place) = 0;
};

}  // namespace kvstation
