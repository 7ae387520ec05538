#pragma once

// KVTSWRP64.dll: what Windows knows about the terminal session of this process and about the client behind it.
//
// The texts are in the ANSI code page. A text query returns non-zero only when it filled the buffer with a text that is
// not empty; it never writes beyond size bytes, cuts a longer text to size - 1, and leaves the buffer terminated, empty
// when there is nothing to tell. A null buffer or a size below 1 returns zero.

extern "C" {
// Opens the wrapper; every call is matched by one of ZRTSWRPFree. May be called while a library is being loaded:
// it only counts, and the first query loads wtsapi32.dll. Always returns non-zero.
int ZRTSWRPInit(void);

// Matches one ZRTSWRPInit; after the last one the text queries answer zero. May be called while a library is being
// unloaded. Zero when there was no call of ZRTSWRPInit to match.
int ZRTSWRPFree(void);

// The name of the client device, such as "THIN07" (WTSClientName). Zero on the console.
int ZRTSQueryClientName(char* buffer, int size);

// The address of the client device, dotted, such as "192.168.7.20" (WTSClientAddress). Zero on the console and for
// a client that is not reached by IPv4.
int ZRTSQueryIPAddress(char* buffer, int size);

// The number of the session (WTSSessionId, else ProcessIdToSessionId); -1 when Windows does not tell.
int ZRTSQuerySessionID(void);

// The domain of the session's user, such as "LAB" (WTSDomainName).
int ZRTSDomainName(char* buffer, int size);
}
