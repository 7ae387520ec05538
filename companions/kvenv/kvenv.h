#pragma once

// kvenv64.dll: the product's environment variables, which are those of the process.
//
// The library exports by ordinal only (set is 2, get is 3), so a program imports these by linking the CMake target
// "kvenv"; the names exist for the compiler alone.

extern "C" {
// Stores value under name for the rest of the process (SetEnvironmentVariableA). An empty value makes an empty
// variable, which exists; a null value removes the variable. Non-zero when it is done; zero for a null name and for one
// that Windows refuses. The texts are only read; the missing const is the library's interface.
int KVSetEnv(char* name, char* value);

// Fills buffer, size bytes long, with the value of name (GetEnvironmentVariableA): non-zero when the variable exists,
// also with an empty value, zero when it does not. A value of size bytes or more arrives cut to size - 1; without
// memory for a copy of it the answer is zero. The buffer always ends terminated, and empty where the answer is zero. A
// null buffer or a size below 1 only asks whether the variable exists.
int KVGetEnv(const char* name, char* buffer, int size);
}
