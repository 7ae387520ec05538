// Processors, memory, keyboard and OEM code page, by relation: each computer has its own.
#include <cstring>
#include <string>
#include <vector>

#include "tests/conformance/Room.h"
#include "tests/conformance/Suite.h"

namespace conformance {
namespace {

// PROCESSOR_POWER_INFORMATION, which not every set of headers has: six numbers for each processor.
constexpr ULONG kPowerRecord = 24;
constexpr auto kProcessorInformation = static_cast<POWER_INFORMATION_LEVEL>(11);
constexpr LONG kBufferTooSmall = static_cast<LONG>(0xC0000023);
constexpr LONG kInvalidParameter = static_cast<LONG>(0xC000000D);

DWORD processors() {
    SYSTEM_INFO info{};
    GetSystemInfo(&info);
    return info.dwNumberOfProcessors;
}

void testSystemInfo(Suite& suite) {
    const Check check = suite.of("GetSystemInfo");
    SYSTEM_INFO info;
    std::memset(&info, 0x5A, sizeof info);
    GetSystemInfo(&info);
    check.equal("a 64-bit program's architecture", info.wProcessorArchitecture, PROCESSOR_ARCHITECTURE_AMD64);
    check.equal("its type", info.dwProcessorType, PROCESSOR_AMD_X8664);
    check.holds("processors", info.dwNumberOfProcessors >= 1 && info.dwNumberOfProcessors <= 4096);
    check.holds("a level", info.wProcessorLevel != 0 && info.wProcessorLevel != 0x5A5A);
    SYSTEM_INFO again{};
    GetSystemInfo(&again);
    check.equal("the same again", again.wProcessorRevision, info.wProcessorRevision);
}

void testMemoryStatus(Suite& suite) {
    const Check check = suite.of("GlobalMemoryStatus");
    MEMORYSTATUS status;
    std::memset(&status, 0x5A, sizeof status);
    GlobalMemoryStatus(&status);
    check.equal("its own size", status.dwLength, sizeof status);
    check.holds("physical memory", status.dwTotalPhys > 1 << 24 && status.dwTotalPhys < SIZE_T{1} << 56);
    check.holds("no more is free than there is", status.dwAvailPhys <= status.dwTotalPhys);
    check.holds("a 64-bit program's address space", status.dwTotalVirtual > SIZE_T{1} << 32);
    check.holds("a load in percent", status.dwMemoryLoad <= 100);
}

void testKeyboard(Suite& suite) {
    const Check check = suite.of("GetKeyboardType");
    const int type = GetKeyboardType(0);
    check.holds("a type", type >= 1 && type <= 0x51);
    check.equal("the same again", GetKeyboardType(0), type);
    check.holds("a subtype", GetKeyboardType(1) >= 0);
    check.equal("an unknown question", GetKeyboardType(3), 0);
    check.equal("a question below zero", GetKeyboardType(-1), 0);
}

void testPower(Suite& suite) {
    const Check check = suite.of("CallNtPowerInformation");
    const Library library("powrprof.dll");
    const auto ask = library.find<decltype(&CallNtPowerInformation)>("CallNtPowerInformation");
    check.holds("it is there", ask != nullptr);
    if (ask == nullptr)
        return;
    const ULONG size = processors() * kPowerRecord;
    Room exact(size);
    check.equal("exactly full: result", ask(kProcessorInformation, nullptr, 0, exact.data(), size), 0);
    check.holds("exactly full: nothing is written behind it", exact.isUntouchedBehind());
    DWORD number = 77;
    std::memcpy(&number, exact.data(), sizeof number);
    check.equal("exactly full: the first processor is number 0", number, 0);
    Room small(size);
    check.equal("one byte short: result", ask(kProcessorInformation, nullptr, 0, small.data(), size - 1),
                kBufferTooSmall);
    check.holds("too little room: nothing is written", small.isUntouched());
    check.equal("no buffer: result", ask(kProcessorInformation, nullptr, 0, nullptr, 0), kInvalidParameter);
}

}  // namespace

void testHardware(Suite& suite) {
    testSystemInfo(suite);
    testMemoryStatus(suite);
    const Check codePage = suite.of("GetOEMCP");
    codePage.holds("a code page", GetOEMCP() >= 1 && GetOEMCP() <= 65001);
    codePage.equal("the same again", GetOEMCP(), GetOEMCP());
    testKeyboard(suite);
    testPower(suite);
}

}  // namespace conformance
