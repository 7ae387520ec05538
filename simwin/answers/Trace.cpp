#include <cstdarg>
#include <cstdio>
#include <string>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"

using namespace simwin;

namespace {

#ifdef __GNUC__
__attribute__((format(printf, 1, 0)))
#endif
std::string
formatText(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

}  // namespace

void sim_ZRTrace(int level, const char* component, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string text = formatText(format, arguments);
    va_end(arguments);
    makeCall<[](int l, const char* c, const char* t) { sim_ZRTrace(l, c, "%s", t); }>(
        "ZRTrace", kNeverFails,
        [&](Machine& machine) {
            machine.trace({level, component != nullptr ? component : "", text});
        },
        Value{level}, Text{component}, FormattedText{{text.c_str()}});
}
