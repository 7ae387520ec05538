// A terminal-services wrapper of a site's own: it counts its starts and stops and knows no session.
#define KV_COUNTED extern "C" __declspec(dllexport)

KV_COUNTED int g_starts;
KV_COUNTED int g_stops;
int g_starts = 0;
int g_stops = 0;

KV_COUNTED int ZRTSWRPInit() {
    return ++g_starts;
}
KV_COUNTED int ZRTSWRPFree() {
    return ++g_stops;
}
KV_COUNTED int ZRTSQueryClientName(char*, int) {
    return 0;
}
KV_COUNTED int ZRTSQueryIPAddress(char*, int) {
    return 0;
}
KV_COUNTED int ZRTSQuerySessionID() {
    return 0;
}
KV_COUNTED int ZRTSDomainName(char*, int) {
    return 0;
}
