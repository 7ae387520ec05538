#include "kvstation/CallTimes.h"

#include <algorithm>
#include <cstdio>

#include "kvstation/VisibleText.h"

namespace kvstation {
namespace {

constexpr std::size_t kSlowest = 5;
constexpr std::size_t kLongestArguments = 80;

struct StepTime {
    std::string_view step;
    std::chrono::nanoseconds duration{};
    std::size_t calls = 0;
};

std::string line(std::chrono::nanoseconds duration, const std::string& what) {
    char time[32];
    std::snprintf(time, sizeof time, "%10.3f ms  ", std::chrono::duration<double, std::milli>(duration).count());
    return time + what + "\n";
}

std::vector<StepTime> stepTimes(const std::vector<StepCall>& calls) {
    std::vector<StepTime> times;
    for (const StepCall& call : calls) {
        auto found = std::ranges::find(times, call.step, &StepTime::step);
        if (found == times.end())
            found = times.insert(times.end(), {call.step});
        found->duration += call.duration;
        ++found->calls;
    }
    return times;
}

std::string callText(const simwin::ObservedCall& call) {
    std::string arguments = visible(call.arguments);
    if (columns(arguments) > kLongestArguments) {
        arguments.resize(bytesOf(arguments, kLongestArguments));
        arguments += "...";
    }
    return call.name + "(" + arguments + ")";
}

}  // namespace

std::string timesText(const std::vector<StepCall>& calls) {
    std::string text = "Time in platform calls\n";
    for (const StepTime& time : stepTimes(calls))
        text += line(time.duration, std::string(time.step.empty() ? "before the first step" : time.step) + " (" +
                                        std::to_string(time.calls) + (time.calls == 1 ? " call)" : " calls)"));
    std::vector<const StepCall*> slowest;
    slowest.reserve(calls.size());
    for (const StepCall& call : calls)
        slowest.push_back(&call);
    std::ranges::stable_sort(slowest, std::greater(), [](const StepCall* call) { return call->duration; });
    slowest.resize(std::min(slowest.size(), kSlowest));
    text += "\nSlowest calls\n";
    for (const StepCall* call : slowest)
        text += line(call->duration, callText(call->call) + ", " + std::string(call->step));
    return text;
}

}  // namespace kvstation
