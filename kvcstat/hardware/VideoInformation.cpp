#include "kvcstat/hardware/VideoInformation.h"

int CVideoInformation::GetVideoInformation() {
    GetMonitor();
    return GetVideoAdapter();
}
