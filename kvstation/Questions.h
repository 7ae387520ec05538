// What a collection asked a machine.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/CapturedRegistry.h"
#include "simwin/CallObserver.h"

namespace kvstation {

// Full paths of keys, without regard to letter case.
class KeyPaths {
  public:
    bool add(const std::string& path);  // false when it was known
    bool add(const KeyPaths& paths);    // false when all were known
    std::vector<std::string> byDepth() const;
    const std::vector<std::string>& all() const { return m_paths; }

  private:
    std::vector<std::string> m_paths;            // in the order of their adding
    std::set<std::string, std::less<>> m_known;  // in capitals
};

class Questions : public simwin::CallObserver {
  public:
    void ends(const simwin::ObservedCall& call) override;

    const CapturedRegistry& registry() const { return m_registry; }
    const KeyPaths& keys() const { return m_keys; }                    // opened or not there
    const KeyPaths& missingKeys() const { return m_missingKeys; }      // not there
    const std::vector<std::string>& files() const { return m_files; }  // looked for
    const std::vector<std::string>& missingVariables() const { return m_missingVariables; }

    bool hasMade(std::string_view call) const { return m_calls.contains(call); }
    bool hasAskedVariable(std::string_view name) const;

  private:
    CapturedRegistry m_registry;
    KeyPaths m_keys;
    KeyPaths m_missingKeys;
    std::set<std::string, std::less<>> m_calls;
    std::vector<std::string> m_files;
    std::vector<std::string> m_variables;
    std::vector<std::string> m_missingVariables;
};

}  // namespace kvstation
