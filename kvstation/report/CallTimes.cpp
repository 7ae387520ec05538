#include "kvstation/report/CallTimes.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

using std::chrono::nanoseconds;

constexpr std::size_t kSlowest = 5;
constexpr std::size_t kLongestArguments = 80;

struct Spent {
    std::string what;
    nanoseconds duration{};
    std::size_t calls = 0;
};

std::string line(nanoseconds duration, const std::string& what) {
    char time[32];
    std::snprintf(time, sizeof time, "%10.3f ms  ", std::chrono::duration<double, std::milli>(duration).count());
    return time + what + "\n";
}

void add(std::map<std::string, Spent>& all, const std::string& what, nanoseconds duration) {
    Spent& spent = all.try_emplace(what, Spent{what}).first->second;
    spent.duration += duration;
    ++spent.calls;
}

// The longest first.
std::string lines(const std::map<std::string, Spent>& all) {
    std::vector<Spent> sorted;
    sorted.reserve(all.size());
    for (const auto& [what, spent] : all)
        sorted.push_back(spent);
    std::ranges::stable_sort(sorted, std::greater(), &Spent::duration);
    std::string text;
    for (const Spent& spent : sorted)
        text += line(spent.duration,
                     spent.what + " (" + std::to_string(spent.calls) + (spent.calls == 1 ? " call)" : " calls)"));
    return text;
}

std::string callText(const simwin::ObservedCall& call) {
    return call.name + "(" + shortened(visible(call.arguments), kLongestArguments) + ")";
}

std::string slowest(const std::vector<TimedCall>& calls) {
    std::vector<const TimedCall*> sorted;
    sorted.reserve(calls.size());
    for (const TimedCall& call : calls)
        sorted.push_back(&call);
    std::ranges::stable_sort(sorted, std::greater(), [](const TimedCall* call) { return call->duration; });
    sorted.resize(std::min(sorted.size(), kSlowest));
    std::string text;
    for (const TimedCall* call : sorted)
        text += line(call->duration, callText(call->call));
    return text;
}

}  // namespace

std::string timesText(const std::vector<TimedCall>& calls, const std::vector<std::vector<std::string>>& fields) {
    std::map<std::string, Spent> byField;
    std::map<std::string, Spent> byCall;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        add(byCall, calls[i].call.name, calls[i].duration);
        if (i < fields.size())
            for (const std::string& field : fields[i])
                add(byField, field, calls[i].duration);
    }
    return "Time in the questions that each field hangs on\n" + lines(byField) + "\nTime in each platform call\n" +
           lines(byCall) + "\nSlowest calls\n" + slowest(calls);
}

}  // namespace kvstation
