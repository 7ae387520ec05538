#pragma once

#include <cstddef>

// Adds one line to the end of the file at the path, and makes the file when there is none. Lines of several processes
// do not mix; on a network drive they can where a writer keeps the lock for more than a quarter of a second. The file
// is open for this one line only, so that it can be read, renamed or removed at any time. A file that cannot be written
// is left alone: tracing never disturbs what is traced.
void AppendTraceLine(const char* path, const char* line, std::size_t length) noexcept;
