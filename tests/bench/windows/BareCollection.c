/* The least that a record costs: a program that loads kvcstat64.dll, which is in the current folder, calls it once and
   prints the record in hexadecimal. */
#include <stdio.h>
#include <windows.h>

#include "include/kvcstat.h"

int main(void) {
    static char record[KVCSTAT_RECORD_SIZE];
    const HMODULE library = LoadLibraryA("kvcstat64.dll");
    const FARPROC found = library != NULL ? GetProcAddress(library, "GetStationData") : NULL;
    if (found == NULL)
        return 1;
    ((void (*)(char*))(void (*)(void))found)(record);
    for (size_t i = 0; i < sizeof record; ++i)
        printf("%02x", (unsigned char)record[i]);
    putchar('\n');
    return 0;
}
