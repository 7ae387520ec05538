/* The record's layout as the compiler sees it, against the table of its fields: a field that moved does not compile. */
#include <stddef.h>

#include <kvcstat.h>

#define KV_TEXT(name, offset, width, limit, group, meaning) \
    typedef char name##_check                               \
        [offsetof(STATIONDATA, name) == offset && sizeof(((STATIONDATA*)0)->name) == width && limit < width ? 1 : -1];
#define KV_NUMBER(name, offset, group, meaning) \
    typedef char name##_check[offsetof(STATIONDATA, name) == offset && sizeof(((STATIONDATA*)0)->name) == 4 ? 1 : -1];
#define KV_UNSIGNED(name, offset, group, meaning) KV_NUMBER(name, offset, group, meaning)
#include <kvcstat_fields.inc>

typedef char record_size_check
    [sizeof(STATIONDATA) >= KVCSTAT_RECORD_SIZE && sizeof(STATIONDATA) <= KVCSTAT_RECORD_SIZE + 2 ? 1 : -1];
