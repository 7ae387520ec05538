// The functions of Microsoft's C runtime that the module uses and other C libraries do not have.
#pragma once

#ifdef _WIN32
#define _CPP_MBCS_INLINES_DEFINED  // one function of each name, without those that only cast
#include <io.h>
#include <mbstring.h>
#include <string.h>
#else
extern "C" {
char* _strupr(char* text);                    // A to Z only: the "C" locale
unsigned char* _mbsupr(unsigned char* text);  // by the ANSI code page
unsigned char* _mbslwr(unsigned char* text);  // by the ANSI code page
int _access(const char* path, int mode);      // 0: the file exists (mode 0)
// By characters of the ANSI code page, of one byte or two; a lead byte without its second is half a character.
int _mbscmp(const unsigned char* left, const unsigned char* right);  // exact
unsigned char* _mbschr(const unsigned char* text, unsigned int character);
unsigned char* _mbsrchr(const unsigned char* text, unsigned int character);
unsigned char* _mbsstr(const unsigned char* text, const unsigned char* part);
}
#endif
