// How a library can end the process that called it, and who then hears of it. Windows only.
#pragma once

#include "framework/Windows.h"
#include "kvstation/platform/Handles.h"

namespace kvstation {

// What SetErrorMode is told of a process in which a crash brings up no message box.
inline constexpr UINT kNoBoxes = SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX;

struct Ending {
    enum class How { Crash, Abort, Exit };
    How how;
    DWORD code;           // the exception's of a crash
    const void* address;  // of a crash; else of who asked for the end
};

// While it lives, a crash or an abort brings up no message box and no debugger. Its thread stops and sets the event, so
// that another one can tell of it: the stack may be used up. One lives at a time.
class EndingHandlers {
  public:
    // For a process that ends while this thread is its last one.
    using TellExit = void (*)(void* context, const Ending& ending);

    EndingHandlers(TellExit tellExit, void* context);
    EndingHandlers(const EndingHandlers&) = delete;
    EndingHandlers& operator=(const EndingHandlers&) = delete;
    ~EndingHandlers();

    // As a crash does; for a call of the library that would end the process. The thread stops.
    [[noreturn]] static void exitBy(const void* caller);

    // Set once there is an ending.
    HANDLE event() const { return m_event.get(); }
    const Ending& ending() const { return m_ending; }

  private:
    static LONG WINAPI onCrash(EXCEPTION_POINTERS* exception);
    static LONG WINAPI onStackOverflow(EXCEPTION_POINTERS* exception);
    static void onAbort(int signal);
    static void WINAPI onExit(void* handlers);
    [[noreturn]] void stopBy(const Ending& ending);

    static EndingHandlers* s_current;  // for those that Windows hands nothing of ours

    const TellExit m_tellExit;
    void* const m_context;
    const OwnedHandle m_event;
    const UINT m_errorMode;
    const LPTOP_LEVEL_EXCEPTION_FILTER m_crashFilter;
    void* const m_overflowHandler;
    void (*const m_abortHandler)(int);
    const DWORD m_exitSlot;
    Ending m_ending{};
};

}  // namespace kvstation
