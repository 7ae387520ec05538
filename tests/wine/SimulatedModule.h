// The real kvcstat64.dll on a simulated machine: what it imports and what it looks up is answered by simwin.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "redirect/Redirection.h"
#include "simwin/machine/Machine.h"
#include "tests/stations/ExpectedStation.h"
#include "tests/wine/StationModule.h"

namespace kvtest {

class SimulatedModule {
  public:
    // The heap that the library's strings come from: the machine's, or this process's own, where what stays is seen.
    enum class Heap { Simulated, Real };

    // Those of `others` take the place of the machine's answers.
    explicit SimulatedModule(Heap heap = Heap::Simulated, std::span<const redirect::Replacement> others = {});

    bool IsLoaded() const { return m_module.IsLoaded(); }
    HMODULE Library() const { return m_module.Library(); }
    // One call on a cleared record. The machine's answers and what it saw are this call's and those before it.
    CollectedStation Collect(simwin::Machine& machine);
    // The same without a look at standard output, for calls in great number: the record's bytes.
    std::string CollectRecord(simwin::Machine& machine);
    void CollectInto(char* record, simwin::Machine& machine) const;

    // What the library would still ask of the real platform.
    const std::vector<redirect::Import>& Unanswered() const { return m_redirection->untouched(); }

  private:
    StationModule m_module;
    std::optional<redirect::Redirection> m_redirection;  // none when the library is not loaded; goes before it does
    GuardedRecord m_record;
};

}  // namespace kvtest
