// The functions of Microsoft's C runtime that the module uses and other C libraries do not have.
#pragma once

#ifdef _WIN32
#include <io.h>
#include <mbstring.h>
#include <string.h>
#else
extern "C" {
char* _strupr(char* text);                                           // A to Z only: the "C" locale
unsigned char* _mbsupr(unsigned char* text);                         // by the ANSI code page
unsigned char* _mbslwr(unsigned char* text);                         // by the ANSI code page
int _mbscmp(const unsigned char* left, const unsigned char* right);  // exact, as unsigned bytes
int _access(const char* path, int mode);                             // 0: the file exists (mode 0)
}
#endif
