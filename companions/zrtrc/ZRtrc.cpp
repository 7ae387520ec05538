#include "companions/zrtrc/ZRtrc.h"

#include <cstdarg>
#include <cstdio>

#include "companions/zrtrc/TraceFile.h"
#include "companions/zrtrc/TraceLine.h"
#include "framework/Windows.h"

namespace {

// An environment variable that is too long for its buffer counts as unset.
template <std::size_t Size>
class Variable {
  public:
    explicit Variable(const char* name) noexcept {
        const DWORD length = GetEnvironmentVariableA(name, m_value, Size);
        m_isSet = length > 0 && length < Size;
    }
    const char* Value() const noexcept { return m_isSet ? m_value : nullptr; }

  private:
    char m_value[Size];
    bool m_isSet;
};

TraceTime LocalTime() noexcept {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

void Trace(int level, const char* component, const char* format, va_list arguments) noexcept {
    const Variable<MAX_PATH> file("KVTraceFile");
    // Without a debugger, the output would go to whatever viewer of debug output there is, and a viewer that has
    // stopped holds up every line for ten seconds.
    const bool debugged = IsDebuggerPresent() != FALSE;
    if ((file.Value() == nullptr && !debugged) || !IsLevelTraced(level, Variable<16>("KVTraceLevel").Value()))
        return;

    // A longer text is cut without a terminator, which the last byte then is.
    char text[kTraceLineSize] = {};
    _vsnprintf(text, sizeof text - 1, format, arguments);
    char line[kTraceLineSize];
    const std::size_t length = FormatTraceLine({LocalTime(), GetCurrentProcessId(), level, component, text}, line);
    if (debugged)
        OutputDebugStringA(line);
    if (file.Value() != nullptr)
        AppendTraceLine(file.Value(), line, length);
}

}  // namespace

extern "C" void ZRTrace(int level, const char* component, const char* format, ...) {
    // Callers trace between a failed call and their look at its error.
    const DWORD error = GetLastError();
    va_list arguments;
    va_start(arguments, format);
    Trace(level, component, format != nullptr ? format : "", arguments);
    va_end(arguments);
    SetLastError(error);
}
