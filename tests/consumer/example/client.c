/* Asks for this station's record and prints some of it. */
#include <stdio.h>
#include <string.h>

#include <kvcstat.h>

int main(void) {
    static STATIONDATA station;

    /* The library writes texts without their terminator: it is the zero that stands here before. */
    memset(&station, 0, sizeof station);
    GetStationData((char*)&station);

    if (station.szStation[0] == '\0') {
        fputs("This station has no name.\n", stderr);
        return 1;
    }
    printf("szStation: %s\n", station.szStation);
    printf("szOS: %s\n", station.szOS);
    printf("dwNumberOfProcessors: %d\n", (int)station.dwNumberOfProcessors);
    return 0;
}
