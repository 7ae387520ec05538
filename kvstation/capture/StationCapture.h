// Writes down what a collection asks and is answered, as a described station that answers the same.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "kvstation/capture/CapturedRegistry.h"
#include "simwin/machine/CallObserver.h"
#include "simwin/station/Station.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

class StationCapture : public simwin::CallObserver {
  public:
    // Of a station whose ANSI code page is in force now.
    StationCapture() { m_station.codePages.ansi = simwin::codePageInForce(); }

    void ends(const simwin::ObservedCall& call) override;

    // What was told so far.
    simwin::Station station() const;

  private:
    friend struct CaptureTaker;

    // How a call went, all times together.
    struct Outcome {
        bool hasSucceeded = false;
        std::uint32_t error = 0;  // of the last failure
    };

    simwin::Station m_station;
    CapturedRegistry m_registry;
    std::map<std::string, Outcome, std::less<>> m_outcomes;
    std::set<std::string, std::less<>> m_published;               // variables that the module itself has set
    std::map<std::string, std::string, std::less<>> m_realPaths;  // by the path that was asked for
    std::map<std::uint64_t, std::string> m_libraries;             // by handle
    std::string m_versionedFile;                                  // whose version resource was read last
    bool m_expectsGroup = false;                                  // the group's name is converted next
};

}  // namespace kvstation
