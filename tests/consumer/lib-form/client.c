/* Prints the station's name, with neither a C runtime nor a Windows header. */
#include <kvcstat.h>

#define STANDARD_OUTPUT ((uint32_t)-11)

__declspec(dllimport) void* __stdcall GetStdHandle(uint32_t which);
__declspec(dllimport) int __stdcall WriteFile(void* file, const void* bytes, uint32_t size, uint32_t* written,
                                              void* overlapped);
__declspec(dllimport) void __stdcall ExitProcess(uint32_t status);

static STATIONDATA station;

static void print(const char* text) {
    uint32_t length = 0;
    uint32_t written;
    while (text[length] != '\0')
        ++length;
    WriteFile(GetStdHandle(STANDARD_OUTPUT), text, length, &written, 0);
}

void start(void) {
    GetStationData((char*)&station);
    print("szStation: ");
    print(station.szStation);
    print("\n");
    ExitProcess(station.szStation[0] == '\0');
}
