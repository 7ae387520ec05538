// Whole collections on stations made of the fuzzer's bytes.
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "include/kvcstat.h"
#include "kvcstat/hardware/HardwareInformation.h"
#include "kvcstat/os/OSInformation.h"
#include "simwin/machine/Machine.h"
#include "simwin/text/CodePage.h"
#include "tests/fuzz/Blocks.h"
#include "tests/fuzz/Check.h"
#include "tests/fuzz/FuzzedStation.h"
#include "tests/stations/RecordPlace.h"

namespace {

using kvfuzz::check;
using simwin::HandleKind;

std::uint32_t numberAt(const char* record, std::size_t offset) {
    std::uint32_t number = 0;
    std::memcpy(&number, record + offset, sizeof number);
    return number;
}

bool isZero(const char* record, std::size_t from, std::size_t behind) {
    for (std::size_t i = from; i < behind; ++i) {
        if (record[i] != '\0')
            return false;
    }
    return true;
}

void checkFlags(const char* record) {
    for (const std::size_t flag :
         {offsetof(STATIONDATA, bInternetExplorer), offsetof(STATIONDATA, bNetscape), offsetof(STATIONDATA, bOutlook),
          offsetof(STATIONDATA, bExchange), offsetof(STATIONDATA, dwWinFrame), offsetof(STATIONDATA, dwMetaFrame),
          offsetof(STATIONDATA, dwTSClientSession)})
        check(numberAt(record, flag) <= 1, "a flag holds 0 or 1");
}

// The record was cleared before: what the run never writes is zero, the last byte of each text among it.
void checkUnwritten(const char* record) {
    for (const kvtest::RecordPlace& area : kvtest::RecordPlace::reserved())
        check(isZero(record, area.offset, area.behind()), "the reserved areas stay as they were");
#define KV_TEXT(name, offset, width, limit, group, meaning) \
    check(record[(offset) + (width)-1] == '\0', #name " ends within its width");
#define KV_NUMBER(name, offset, group, meaning)
#define KV_UNSIGNED(name, offset, group, meaning)
#include "include/kvcstat_fields.inc"
}

void checkHandles(const simwin::Machine& machine) {
    for (const std::string& misuse : machine.misuses())
        check(false, misuse.c_str());
    std::size_t processes = 0;
    std::size_t tokens = 0;
    std::size_t citrixTexts = 0;
    for (const simwin::OpenHandle& handle : machine.openHandles()) {
        processes += handle.kind == HandleKind::Process ? 1 : 0;
        tokens += handle.kind == HandleKind::Token ? 1 : 0;
        citrixTexts += handle.kind == HandleKind::CitrixBuffer ? 1 : 0;
        check(handle.kind == HandleKind::Process || handle.kind == HandleKind::Token ||
                  handle.kind == HandleKind::CitrixBuffer,
              "nothing stays open but process, token and the Citrix text");
    }
    check(processes <= 1 && tokens <= 1 && citrixTexts <= 1,
          "one process handle, one token handle and one Citrix text stay open at most");
}

// The first word of every hardware collector.
std::uintptr_t hardwareMark() {
    static const std::uintptr_t mark = [] {
        COSInformation os;
        const CHardwareInformation hardware(&os);
        std::uintptr_t first = 0;
        std::memcpy(&first, static_cast<const void*>(&hardware), sizeof first);
        return first;
    }();
    return mark;
}

// A collection leaves one hardware collector behind. It is deleted here, so that millions of runs fit into memory
// and whatever else stayed allocated is seen.
void deleteHardwareCollector(const std::vector<void*>& candidates) {
    std::size_t found = 0;
    for (void* candidate : candidates) {
        if (std::memcmp(candidate, &static_cast<const std::uintptr_t&>(hardwareMark()), sizeof(std::uintptr_t)) == 0) {
            delete static_cast<CHardwareInformation*>(candidate);
            ++found;
        }
    }
    check(found == 1, "one hardware collector stays allocated");
}

void collect(std::string_view bytes) {
    kvfuzz::InputReader input(bytes);
    const std::uint8_t callToFail = input.byte();
    simwin::Machine machine(kvfuzz::readFuzzedStation(input));
    machine.keepTrace(false);
    if (callToFail >= 128)
        machine.failCall(callToFail - 127u);
    const simwin::Machine::Scope scope(machine);

    // Of the very size that the module needs, so that the sanitizer sees the first byte behind it.
    const auto record = std::make_unique<char[]>(KVCSTAT_RECORD_SIZE);
    kvfuzz::watchBlocks(sizeof(CHardwareInformation));
    GetStationData(record.get());
    const std::vector<void*> candidates = kvfuzz::watchedBlocks();
    kvfuzz::watchBlocks(0);

    checkFlags(record.get());
    checkUnwritten(record.get());
    checkHandles(machine);
    deleteHardwareCollector(candidates);
    check(machine.openHeapBlocks() == 0, "no text stays allocated");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    hardwareMark();
    // Tables that live as long as the program.
    for (const unsigned page : simwin::knownCodePages())
        const simwin::CodePageScope made(page);
    collect({});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::size_t before = kvfuzz::liveBlocks();
    collect({reinterpret_cast<const char*>(data), size});
    check(kvfuzz::liveBlocks() == before, "no block stays allocated");
    return 0;
}
