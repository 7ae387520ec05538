// A collection by the real library in the tool's own process. Windows only.
#pragma once

#include <chrono>
#include <string_view>

#include "framework/Windows.h"
#include "kvstation/collect/LastQuestion.h"
#include "kvstation/collect/LastWords.h"
#include "kvstation/platform/EndingHandlers.h"
#include "kvstation/platform/Handles.h"
#include "kvstation/platform/StreamAside.h"
#include "simwin/machine/CallObserver.h"

namespace kvstation {

// While it lives, what the library prints goes nowhere, and however the collection ends, it is told: a hang, a crash,
// an abort and an exit of the process by the library end the tool in one line with the last question. One lives at a
// time.
class LiveCollection : public simwin::CallObserver {
  public:
    // `observer` is told of the calls too.
    LiveCollection(std::chrono::seconds limit, simwin::CallObserver& observer);
    LiveCollection(const LiveCollection&) = delete;
    LiveCollection& operator=(const LiveCollection&) = delete;
    ~LiveCollection() override;

    // What is done beside asking, such as "loading kvcstat64.dll".
    void works(std::string_view work) { m_last.noteWork(work); }

    void begins(const simwin::ObservedCall& call) override;
    void ends(const simwin::ObservedCall& call) override { m_observer.ends(call); }

  private:
    static DWORD WINAPI startWatch(void* collection);
    void watch();

    [[noreturn]] void tellHang() const;
    [[noreturn]] void tell(const Ending& ending) const;
    // "kvstation: the collection hung at its last question KVGetDomainName()"
    LastWords lastWords(std::string_view what) const;

    const std::chrono::seconds m_limit;
    simwin::CallObserver& m_observer;
    LastQuestion m_last;
    const StreamAside m_output{kStandardOutput};
    const StreamAside m_errors{kStandardError};
    const HANDLE m_errorFile;
    const OwnedHandle m_isWatched;  // events
    const OwnedHandle m_isOver;
    const EndingHandlers m_handlers;
    const OwnedHandle m_watch;  // a thread
};

}  // namespace kvstation
