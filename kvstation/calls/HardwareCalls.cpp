// Processors, memory, keyboard, and the code page of the console.
#include <algorithm>
#include <array>
#include <iterator>

#include "framework/Windows.h"
#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/PlainPlaces.h"
#include "kvstation/calls/StationDraft.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

// One of each architecture.
constexpr std::string_view kSystems = R"([
  {"architecture": 0, "count": 1, "type": 386, "level": 3, "revision": 1},
  {"architecture": 0, "count": 1, "type": 486, "level": 4, "revision": 1025},
  {"architecture": 0, "count": 1, "type": 586, "level": 5, "revision": 1025},
  {"architecture": 0, "count": 2, "type": 586, "level": 15, "revision": 1025},
  {"architecture": 1, "count": 1, "type": 4000, "level": 4, "revision": 1},
  {"architecture": 2, "count": 1, "type": 21064, "level": 21064, "revision": 1},
  {"architecture": 3, "count": 1, "type": 604, "level": 4, "revision": 1},
  {"architecture": 6, "count": 1, "type": 2200, "level": 31, "revision": 1},
  {"architecture": 9, "count": 4, "type": 8664, "level": 6, "revision": 1}])";

simwin::Processors processorsIn(const ObservedCall& call) {
    const auto info = structureAt<SYSTEM_INFO>(call, 0);
    simwin::Processors processors;
    processors.architecture = info.wProcessorArchitecture;
    processors.count = info.dwNumberOfProcessors;
    processors.type = info.dwProcessorType;
    processors.level = info.wProcessorLevel;
    processors.revision = info.wProcessorRevision;
    return processors;
}

Answer tellProcessors(const ObservedCall& call) {
    const simwin::Processors processors = processorsIn(call);
    return wordsAnswer("architecture " + std::to_string(processors.architecture) + ", processors " +
                       std::to_string(processors.count) + ", type " + std::to_string(processors.type) + ", level " +
                       std::to_string(processors.level) + ", revision " + std::to_string(processors.revision));
}

void keepProcessors(StationDraft& draft, const ObservedCall& call) {
    draft.station.processors = processorsIn(call);
}

// The third number of a processor's record.
std::uint32_t clockIn(const ObservedCall& call) {
    return structureAt<std::array<std::uint32_t, 6>>(call, 3)[2];
}

Answer tellClock(const ObservedCall& call) {
    return wordsAnswer(std::to_string(clockIn(call)) + " MHz");
}

constexpr std::uint32_t kBufferTooSmall = 0xC0000023;
constexpr NamedError kNtStatuses[] = {
    {0xC0000002, "STATUS_NOT_IMPLEMENTED"}, {0xC000000D, "STATUS_INVALID_PARAMETER"},
    {0xC0000022, "STATUS_ACCESS_DENIED"},   {kBufferTooSmall, "STATUS_BUFFER_TOO_SMALL"},
    {0xC00000BB, "STATUS_NOT_SUPPORTED"},
};

std::string_view ntStatusName(std::uint32_t status) {
    return nameIn(kNtStatuses, status);
}

// A record for each processor is too much for the caller's room when there are several, and then no clock is told.
void keepClock(StationDraft& draft, const ObservedCall& call) {
    if (!draft.station.processors)
        return;
    simwin::Processors& processors = *draft.station.processors;
    if (call.succeeded)
        processors.currentMhz = {clockIn(call)};
    else if (static_cast<std::uint32_t>(simwin::numberOf(call.result)) == kBufferTooSmall)
        processors.currentMhz.assign(std::max(2u, std::min(processors.count, 1024u)), 0);
}

simwin::Memory memoryIn(const ObservedCall& call) {
    const auto status = structureAt<MEMORYSTATUS>(call, 0);
    return {status.dwTotalPhys, status.dwTotalVirtual};
}

Answer tellMemory(const ObservedCall& call) {
    const simwin::Memory memory = memoryIn(call);
    return wordsAnswer("physical " + std::to_string(memory.physical) + ", virtual " +
                       std::to_string(memory.virtualSize));
}

void keepMemory(StationDraft& draft, const ObservedCall& call) {
    draft.station.memory = memoryIn(call);
}

// Null for a question that every keyboard answers with 0.
const simwin::KeyboardNumber* keyboardNumberOf(const ObservedCall& call) {
    const std::uint64_t asked = numberAt(call, 0);
    return asked < std::size(simwin::kKeyboardNumbers) ? &simwin::kKeyboardNumbers[asked] : nullptr;
}

Place placeOfKeyboard(const ObservedCall& call) {
    const simwin::KeyboardNumber* number = keyboardNumberOf(call);
    return number != nullptr ? memberPlace({"keyboard", number->name}) : Place{};
}

void keepKeyboard(StationDraft& draft, const ObservedCall& call) {
    const simwin::KeyboardNumber* number = keyboardNumberOf(call);
    if (!draft.station.keyboard)
        draft.station.keyboard.emplace();
    if (number != nullptr)
        (*draft.station.keyboard).*number->number = static_cast<int>(simwin::numberOf(call.result));
}

}  // namespace

KV_CALL(GetSystemInfo, asks("the processors", member<"processors">, kSystems), tellProcessors, keepProcessors);
KV_CALL(CallNtPowerInformation,
        asks("the processors' clocks", member<"processors", "currentMhz">, "[[0], [777], [777, 777]]"), tellClock,
        keepClock, ntStatusName);
KV_CALL(GlobalMemoryStatus,
        asks("the memory", member<"memory">,
             R"([{"physical": 67108864, "virtual": 2147352576}, {"physical": 1073741824, "virtual": 2147352576}])"),
        tellMemory, keepMemory);
KV_CALL(GetOEMCP, asks("the OEM code page", member<"codePages", "oem">, "[437, 850, 932]"), tellNumber,
        keepResult<&simwin::Station::codePages, &simwin::CodePages::oem>);
KV_CALL(GetKeyboardType, asks("the keyboard's type", placeOfKeyboard, "[0, 1, 2, 3, 4, 5, 6, 7, 8]"), tellNumber,
        keepKeyboard);

}  // namespace kvstation
