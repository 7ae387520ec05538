#include "kvstation/platform/EndingHandlers.h"

#include <csignal>

#include "kvstation/platform/ImagePlace.h"

namespace kvstation {
namespace {

constexpr ULONG kStackForHandlers = 0x10000;  // bytes that are left where a stack is used up

}  // namespace

EndingHandlers* EndingHandlers::s_current = nullptr;

// A slot of this thread's fibers tells of the process's end: its function is called then, if it holds something.
EndingHandlers::EndingHandlers(TellExit tellExit, void* context)
    : m_tellExit(tellExit),
      m_context(context),
      m_event(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      m_errorMode(SetErrorMode(kNoBoxes)),
      m_crashFilter(SetUnhandledExceptionFilter(onCrash)),
      m_overflowHandler(AddVectoredExceptionHandler(1, onStackOverflow)),
      m_abortHandler(std::signal(SIGABRT, onAbort)),
      m_exitSlot(FlsAlloc(onExit)) {
    s_current = this;
    ULONG stack = kStackForHandlers;
    SetThreadStackGuarantee(&stack);
    FlsSetValue(m_exitSlot, this);
}

EndingHandlers::~EndingHandlers() {
    FlsSetValue(m_exitSlot, nullptr);
    FlsFree(m_exitSlot);
    std::signal(SIGABRT, m_abortHandler);
    RemoveVectoredExceptionHandler(m_overflowHandler);
    SetUnhandledExceptionFilter(m_crashFilter);
    SetErrorMode(m_errorMode);
    s_current = nullptr;
}

LONG WINAPI EndingHandlers::onCrash(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    s_current->stopBy({Ending::How::Crash, record.ExceptionCode, record.ExceptionAddress});
}

// At once: the search for somebody who would handle it takes more stack than Wine leaves.
LONG WINAPI EndingHandlers::onStackOverflow(EXCEPTION_POINTERS* exception) {
    if (exception->ExceptionRecord->ExceptionCode == EXCEPTION_STACK_OVERFLOW)
        onCrash(exception);
    return EXCEPTION_CONTINUE_SEARCH;
}

void EndingHandlers::onAbort(int) {
    s_current->stopBy({Ending::How::Abort, 0, callerOfEnding()});
}

void WINAPI EndingHandlers::onExit(void* handlers) {
    const auto* const self = static_cast<EndingHandlers*>(handlers);
    self->m_tellExit(self->m_context, {Ending::How::Exit, 0, callerOfEnding()});
}

void EndingHandlers::exitBy(const void* caller) {
    s_current->stopBy({Ending::How::Exit, 0, caller});
}

void EndingHandlers::stopBy(const Ending& ending) {
    m_ending = ending;
    SetEvent(m_event.get());
    for (;;)
        Sleep(INFINITE);
}

}  // namespace kvstation
