#pragma once

// ZRtrc64.dll: the product's trace lines.
//
// A line goes to the debugger, when the process runs under one, and to the file that the environment variable
// KVTraceFile names, when its level is at most the number in KVTraceLevel; without a number there every level goes.
// Both variables are read at each call, so that tracing can begin and end while the process runs. A path of more than
// 259 characters counts as unset, and so does a text of more than 15 for the level.

// The text is formatted by Microsoft's C runtime (_vsnprintf of msvcrt.dll), whose formats GCC calls ms_printf: %ld is
// a 32-bit number and there is no %zu.
#if defined(__MINGW32__) && !defined(__clang__)
#define ZRTRC_FORMAT __attribute__((format(ms_printf, 3, 4)))
#elif defined(__GNUC__)
#define ZRTRC_FORMAT __attribute__((format(printf, 3, 4)))
#else
#define ZRTRC_FORMAT
#endif

extern "C" {
// Traces one line: level is a small number, higher for more detail; component names the module, such as
// "KelVor - Station registration (client)"; format and what follows make the text. One line end at the end of the text
// is dropped and other control characters are escaped, so that one call is one line. A line is cut at 4095 bytes. Never
// fails, and leaves GetLastError as it was.
ZRTRC_FORMAT void ZRTrace(int level, const char* component, const char* format, ...);
}
