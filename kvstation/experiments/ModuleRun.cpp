#include "kvstation/experiments/ModuleRun.h"

namespace kvstation {
namespace {

class CallNotes : public simwin::CallObserver {
  public:
    CallNotes(const simwin::Machine& machine, std::vector<AskedCall>& calls, Told told)
        : m_machine(machine), m_calls(calls), m_told(told) {}

    bool readsTexts() const override { return m_told == Told::Everything; }

    void ends(const simwin::ObservedCall& call) override {
        const std::uint64_t failable = m_machine.faultableCalls();
        m_calls.push_back({call, m_machine.calls(), failable != m_failable ? failable : 0});
        m_failable = failable;
    }

  private:
    const simwin::Machine& m_machine;
    std::vector<AskedCall>& m_calls;
    Told m_told;
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

Outcome runOn(const Collector& collector, simwin::Machine& machine, std::vector<AskedCall>& calls, Told told) {
    CallNotes notes(machine, calls, told);
    machine.observe(&notes);
    Outcome outcome = runOn(collector, machine);
    machine.observe(nullptr);
    return outcome;
}

}  // namespace kvstation
