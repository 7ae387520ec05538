#include "kvstation/capture/LiveStation.h"

#include "kvstation/capture/Completion.h"
#include "kvstation/capture/RunningState.h"
#include "kvstation/capture/StationCapture.h"
#include "kvstation/collect/CollectedNow.h"
#include "kvstation/collect/Stage.h"

namespace kvstation {
namespace {

// Tells the capture, the list of what was asked and who else wants to know.
class Witness : public simwin::CallObserver {
  public:
    explicit Witness(simwin::CallObserver& other) : m_other(other) {}

    void begins(const simwin::ObservedCall& call) override { m_other.begins(call); }
    void ends(const simwin::ObservedCall& call) override {
        m_other.ends(call);
        m_capture.ends(call);
        m_calls.push_back({call});
    }

    simwin::Station station() const { return m_capture.station(); }
    const std::vector<AskedCall>& calls() const { return m_calls; }

  private:
    simwin::CallObserver& m_other;
    StationCapture m_capture;
    std::vector<AskedCall> m_calls;
};

}  // namespace

LiveStation captureHere(simwin::CallObserver& observer) {
    const std::unique_ptr<LocalState> state = runningState();
    Witness witness(observer);
    LiveStation live;
    live.record = collectHereObserved(witness);
    live.station = witness.station();
    live.station.collected = collectedNow();
    AskedPlaces asked;
    asked.add(witness.calls());
    const Collector collector;
    complete(live.station, asked, *state, collector);
    return live;
}

simwin::Station captureHere() {
    simwin::CallObserver nobody;
    return captureHere(nobody).station;
}

}  // namespace kvstation
