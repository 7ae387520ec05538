// A described station that is collected again and again, each time with something that fails.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simwin/machine/Machine.h"

namespace kvtest {

// Something that fails once, counted from 1.
struct Fault {
    enum class Kind : std::uint8_t {
        None,
        Call,            // of Windows or a companion
        TextAllocation,  // a string's block, from the process heap
        Allocation,      // the module's `new`
    };
    Kind kind = Kind::None;
    std::uint64_t number = 0;
};

struct FaultedRun {
    std::string record;  // cleared before the call
    bool threw = false;  // std::bad_alloc
    std::string failedCall;
    // What could fail in it.
    std::uint64_t calls = 0;
    std::uint64_t textAllocations = 0;
    std::uint64_t allocations = 0;
    // One line for everything that stayed and should not have.
    std::vector<std::string> leftovers;
    // Of a second call on the same machine, which is made when the first has thrown or when nothing was to fail.
    std::optional<std::string> secondRecord;
};

FaultedRun runWithFault(const std::shared_ptr<const simwin::Station>& station, Fault fault);

}  // namespace kvtest
