#include "kvstation/capture/StationCapture.h"

#include "kvstation/calls/CallRows.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

StationCapture::StationCapture() {
    m_draft.station.codePages.ansi = simwin::codePageInForce();
}

void StationCapture::ends(const simwin::ObservedCall& call) {
    const CallRow* row = findCallRow(call.name);
    if (row == nullptr)
        return;
    CallOutcome& outcome = m_draft.outcomes[call.name];
    outcome.isDescribed = outcome.isDescribed || call.succeeded;
    if (!call.succeeded)
        outcome.error = call.error;
    row->kept.take(m_draft, call);
}

simwin::Station StationCapture::station() const {
    simwin::Station station = m_draft.station;
    m_draft.registry.describe(station);
    for (const auto& [name, outcome] : m_draft.outcomes) {
        const std::optional<std::uint32_t>& described = findCallRow(name)->kept.describedError;
        if (described && !outcome.isDescribed && outcome.error != 0 && outcome.error != *described)
            station.fails[name] = outcome.error;
    }
    return station;
}

}  // namespace kvstation
