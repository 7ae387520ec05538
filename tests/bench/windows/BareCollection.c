/* The least that a collection in a child process costs: a program that starts itself again, and the second one loads
   kvcstat64.dll, which is in the current folder, and calls it. */
#include <windows.h>

#include "include/kvcstat.h"

static int collect(void) {
    static char record[KVCSTAT_RECORD_SIZE];
    const HMODULE library = LoadLibraryA("kvcstat64.dll");
    const FARPROC found = library != NULL ? GetProcAddress(library, "GetStationData") : NULL;
    if (found == NULL)
        return 1;
    ((void (*)(char*))(void (*)(void))found)(record);
    return 0;
}

static int wait_for_child(void) {
    char program[MAX_PATH];
    char words[] = "bare_collection child";
    STARTUPINFOA start = {0};
    PROCESS_INFORMATION child;
    GetModuleFileNameA(NULL, program, sizeof program);
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    if (!CreateProcessA(program, words, NULL, NULL, FALSE, 0, NULL, NULL, &start, &child))
        return 1;
    WaitForSingleObject(child.hProcess, INFINITE);
    return 0;
}

int main(int argument_count, char** arguments) {
    (void)arguments;
    return argument_count > 1 ? collect() : wait_for_child();
}
