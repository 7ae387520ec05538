#include "kvstation/capture/TracedStation.h"

#include "kvstation/capture/HangingFields.h"
#include "kvstation/capture/StationCapture.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/platform/Progress.h"

namespace kvstation {
namespace {

std::vector<std::vector<std::string>> fieldsOf(const simwin::Station& station, const std::vector<TimedCall>& calls) {
    const Progress progress("looking for what hangs on the answers");
    const ExperimentOptions options{.progress = [&](double done) { progress.tell(done); }};
    const Collector collector;
    World world(station);
    HangingFields hanging(Experiments(world, collector, options));
    std::vector<std::vector<std::string>> fields;
    fields.reserve(calls.size());
    for (const TimedCall& one : calls)
        fields.push_back(hanging.next(one.call));
    return fields;
}

// Tells two who want to know.
class Both : public simwin::CallObserver {
  public:
    Both(simwin::CallObserver& first, simwin::CallObserver& second) : m_first(first), m_second(second) {}

    void begins(const simwin::ObservedCall& call) override {
        m_second.begins(call);
        m_first.begins(call);
    }
    void ends(const simwin::ObservedCall& call) override {
        m_first.ends(call);
        m_second.ends(call);
    }

  private:
    simwin::CallObserver& m_first;
    simwin::CallObserver& m_second;
};

}  // namespace

TracedStation traceStation(const simwin::Station& station) {
    CallLog log;
    TracedStation traced;
    {
        simwin::Machine machine(station);
        machine.observe(&log);
        traced.record = collectOn(machine);
        machine.observe(nullptr);
    }
    traced.station = station;
    traced.calls = log.calls();
    traced.fields = fieldsOf(station, traced.calls);
    return traced;
}

TracedStation traceHere() {
    CallLog log;
    StationCapture capture;
    Both both(log, capture);
    TracedStation traced;
    traced.record = collectHereObserved(both);
    traced.station = capture.station();
    traced.calls = log.calls();
    traced.fields = fieldsOf(traced.station, traced.calls);
    return traced;
}

}  // namespace kvstation
