#include "tests/kvstation/cause/StationRun.h"

#include <unordered_map>

#include "simwin/machine/Machine.h"

namespace kvtest {
namespace {

using simwin::ObservedCall;

class Watcher : public simwin::CallObserver {
  public:
    Watcher(const simwin::Machine& machine, StationRun& run) : m_machine(machine), m_run(run) {}

    void ends(const ObservedCall& call) override {
        const std::uint64_t count = m_machine.faultableCalls();
        m_run.calls.push_back(call);
        m_run.failable.push_back(count != m_count ? count : 0);
        m_count = count;
    }

  private:
    const simwin::Machine& m_machine;
    StationRun& m_run;
    std::uint64_t m_count = 0;
};

std::string answered(const ObservedCall& call) {
    std::string all = call.answer + '\0' + std::to_string(call.error) + (call.succeeded ? "+" : "-");
    for (const simwin::Fact& fact : call.parameters)
        all += '\0' + std::string(simwin::textOf(fact));
    return all;
}

// What is asked, and for the how-manieth time.
std::vector<std::string> askedBy(const StationRun& run) {
    std::unordered_map<std::string, int> count;
    std::vector<std::string> asked;
    for (const ObservedCall& call : run.calls) {
        std::string one = call.name + '\0' + call.subject + '\0' + call.arguments;
        const int time = ++count[one];
        asked.push_back(one + '\0' + std::to_string(time));
    }
    return asked;
}

}  // namespace

StationRun runStation(const kvstation::Collector& collector, const std::shared_ptr<const simwin::Station>& station,
                      const OtherCall& other) {
    StationRun run;
    simwin::Machine machine(station);
    machine.keepTrace(false);
    machine.failCall(other.toFail);
    if (other.toChange != 0)
        machine.changeCall(other.toChange, other.toggle);
    Watcher watcher(machine, run);
    machine.observe(&watcher);
    run.record = collector.collect(machine);
    machine.observe(nullptr);
    return run;
}

std::set<std::size_t> differingFields(const StationRun& left, const StationRun& right) {
    const std::vector<std::size_t> found = kvstation::differingFields(left.record, right.record);
    return {found.begin(), found.end()};
}

std::set<std::size_t> differingAnswers(const StationRun& before, const StationRun& after) {
    std::unordered_map<std::string, std::size_t> calls;
    const std::vector<std::string> asked = askedBy(after);
    for (std::size_t i = 0; i < asked.size(); ++i)
        calls.emplace(asked[i], i);
    std::set<std::size_t> found;
    const std::vector<std::string> first = askedBy(before);
    for (std::size_t i = 0; i < first.size(); ++i)
        if (const auto other = calls.find(first[i]);
            other != calls.end() && answered(before.calls[i]) != answered(after.calls[other->second]))
            found.insert(i);
    return found;
}

}  // namespace kvtest
