// What Wine's own tools and Linux say about this station, for tests to hold the record against.
#pragma once

#include <cstdint>
#include <string>

namespace kvtest {

// What a Windows command prints on its standard output.
std::string outputOf(const std::string& command);

// What a Linux command line prints on its standard output.
std::string linuxOutputOf(const std::string& commandLine);

// The text without blanks and line ends at both ends.
std::string trimmed(const std::string& text);

// Text behind "label ... : " in the output of ipconfig, in the section of the adapter that has the address.
std::string adapterLine(const std::string& ipconfig, const std::string& address, const std::string& label);

// Sets a variable of this process for the scope's life; the one before returns.
class ScopedVariable {
  public:
    ScopedVariable(const char* name, const char* value);
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable();

  private:
    std::string m_name;
    std::string m_before;
    bool m_wasSet;
};

// Imports a registry file's text with regedit.
void importRegistry(const std::string& content);

}  // namespace kvtest
