// Writes down what a collection asks and is answered, as a described station that answers the same.
#pragma once

#include "kvstation/calls/StationDraft.h"
#include "simwin/machine/CallObserver.h"
#include "simwin/station/Station.h"

namespace kvstation {

class StationCapture : public simwin::CallObserver {
  public:
    // Of a station whose ANSI code page is in force now.
    StationCapture();

    void ends(const simwin::ObservedCall& call) override;

    // What was told so far.
    simwin::Station station() const;

  private:
    StationDraft m_draft;
};

}  // namespace kvstation
