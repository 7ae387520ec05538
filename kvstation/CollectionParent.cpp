// The parent's side: starts the child, waits, and tells what became of it.
#include <cstdint>
#include <cstdio>

#include "kvstation/ChildProcess.h"
#include "kvstation/Collection.h"
#include "kvstation/CollectionChild.h"
#include "kvstation/Errors.h"

namespace kvstation {
namespace {

OwnedHandle makeSharedMemory() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    OwnedHandle memory(
        CreateFileMappingW(INVALID_HANDLE_VALUE, &inherited, PAGE_READWRITE, 0, sizeof(SharedCollection), nullptr));
    if (!memory)
        throw Failure(describeSystemError("CreateFileMappingW", "the collection's memory", GetLastError()));
    return memory;
}

// The memory as the child is told of it.
std::string numberOf(HANDLE memory) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(memory));
}

std::string where(const SharedCollection& shared) {
    const std::string step = noted(shared.step);
    const std::string call = noted(shared.call);
    return (step.empty() ? "before its first step" : "while " + step) + (call.empty() ? "" : ", last call " + call);
}

[[noreturn]] void failByTime(const SharedCollection& shared, std::chrono::seconds limit) {
    throw Failure("the collection hung " + where(shared) + ": ended after " + std::to_string(limit.count()) +
                  " seconds; --timeout SECONDS gives it longer");
}

[[noreturn]] void failByCrash(const SharedCollection& shared) {
    char place[64];
    std::snprintf(place, sizeof place, "exception 0x%08X at 0x%llX", static_cast<unsigned>(shared.exceptionCode),
                  static_cast<unsigned long long>(shared.exceptionAddress));
    throw Failure("the collection crashed " + where(shared) + " (" + place + ")");
}

[[noreturn]] void failByExit(const SharedCollection& shared, int status) {
    throw Failure("the collection ended by itself " + where(shared) + " (exit status " + std::to_string(status) + ")");
}

// Waits for a child that tells its state, and throws when that is not Done.
void waitForEnd(const ChildProcess& child, const SharedCollection& shared, std::chrono::seconds limit) {
    if (!child.endsWithin(limit)) {
        child.end();
        failByTime(shared, limit);
    }
    switch (shared.state) {
        case CollectionState::Done:
            return;
        case CollectionState::Failed:
            throw Failure(noted(shared.failure));
        case CollectionState::Crashed:
            failByCrash(shared);
        case CollectionState::Running:
            failByExit(shared, child.status());
    }
}

}  // namespace

RecordBytes collectHere(std::chrono::seconds limit, std::string* times) {
    const OwnedHandle memory = makeSharedMemory();
    const MappedCollection shared(memory.get());
    shared->wantsTimes = times != nullptr;
    // The library writes to standard output, which belongs to the result alone.
    const ChildProcess child({{kCollectForParent, numberOf(memory.get())}, memory.get(), nullptr});
    waitForEnd(child, *shared, limit);
    if (times != nullptr)
        *times = noted(shared->times);
    return shared->record;
}

std::optional<int> runInChild(const std::vector<std::string>& arguments, std::chrono::seconds limit) {
    if (parentsMemory() != nullptr)
        return std::nullopt;
    const OwnedHandle memory = makeSharedMemory();
    const MappedCollection shared(memory.get());
    std::vector<std::string> words = {kRunForParent, numberOf(memory.get())};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const ChildProcess child({words, memory.get(), GetStdHandle(STD_OUTPUT_HANDLE)});
    waitForEnd(child, *shared, limit);
    return child.status();
}

}  // namespace kvstation
