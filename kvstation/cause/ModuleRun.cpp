#include "kvstation/cause/ModuleRun.h"

namespace kvstation {
namespace {

class CallNotes : public simwin::CallObserver {
  public:
    CallNotes(const simwin::Machine& machine, std::vector<AskedCall>& calls) : m_machine(machine), m_calls(calls) {}

    void ends(const simwin::ObservedCall& call) override {
        const std::uint64_t failable = m_machine.faultableCalls();
        m_calls.push_back({call, m_machine.calls(), failable != m_failable ? failable : 0});
        m_failable = failable;
    }

  private:
    const simwin::Machine& m_machine;
    std::vector<AskedCall>& m_calls;
    std::uint64_t m_failable = 0;
};

}  // namespace

Outcome runOn(const Collector& collector, simwin::Machine& machine) {
    Outcome outcome;
    outcome.record = collector.collect(machine);
    outcome.published = machine.variablesSet();
    outcome.trace = machine.traceLines();
    outcome.calls = machine.calls();
    return outcome;
}

Outcome runOn(const Collector& collector, simwin::Machine& machine, std::vector<AskedCall>& calls) {
    CallNotes notes(machine, calls);
    machine.observe(&notes);
    Outcome outcome = runOn(collector, machine);
    machine.observe(nullptr);
    return outcome;
}

}  // namespace kvstation
