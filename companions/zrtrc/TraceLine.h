#pragma once

#include <cstddef>

// Local time.
struct TraceTime {
    int year, month, day, hour, minute, second, millisecond;
};

struct TraceEntry {
    TraceTime time;
    unsigned long process;
    int level;
    const char* component;
    const char* text;
};

constexpr std::size_t kTraceLineSize = 4096;

// Writes the entry as one line and returns its length in bytes:
//
//     2024-03-09 07:05:03.042 [1234] 2 KelVor - Station registration (client): Reading station data.<CR><LF>
//
// One line end at the end of the text is dropped. Every other control character, which would break or hide the line, is
// escaped: \n, \r, \t, else \x and two digits. A backslash stays one, so that paths read as they are. A line that would
// be longer than the buffer is cut and ends in "...".
std::size_t FormatTraceLine(const TraceEntry& entry, char (&line)[kTraceLineSize]) noexcept;

// Whether a line of this level is wanted. The limit is the text of KVTraceLevel: the level may be at most its number;
// null or a text that begins with no number wants every level.
bool IsLevelTraced(int level, const char* limit) noexcept;
