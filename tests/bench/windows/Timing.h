// Time and medians, for the benchmarks under Wine.
#pragma once

#include <algorithm>
#include <vector>

#include "framework/Windows.h"

namespace kvbench {

// In microseconds, from no particular start.
inline double now() {
    LARGE_INTEGER count;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart) * 1e6;
}

// Of one time at least.
inline double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

}  // namespace kvbench
