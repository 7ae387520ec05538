#include "kvstation/collect/LiveCollection.h"

#include <io.h>

#include <algorithm>
#include <array>

#include "kvstation/collect/WaitingLine.h"
#include "kvstation/platform/Errors.h"

namespace kvstation {
namespace {

constexpr DWORD kSecond = 1000;

OwnedHandle makeEvent() {
    return OwnedHandle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

// Windows' handle of the stream as it was; null when it was closed.
HANDLE fileOf(const StreamAside& stream) {
    return stream.kept() != -1 ? reinterpret_cast<HANDLE>(_get_osfhandle(stream.kept())) : nullptr;
}

// Wine fills most of a megabyte of a new thread's stack with zeros, which the process holds from then on. Windows holds
// no more of a stack than was used, and has nothing so far down.
void giveBackStack() {
    constexpr std::size_t kKept = 0x10000;  // for what this thread does next, and for the guard at the other end
    auto* const end = static_cast<char*>(__builtin_frame_address(0)) - kKept;
    MEMORY_BASIC_INFORMATION stack{};
    VirtualQuery(end, &stack, sizeof stack);
    auto* const begin = static_cast<char*>(stack.AllocationBase) + kKept;
    if (stack.State == MEM_COMMIT && begin < end)
        VirtualAlloc(begin, static_cast<std::size_t>(end - begin), MEM_RESET, PAGE_READWRITE);
}

}  // namespace

LiveCollection::LiveCollection(std::chrono::seconds limit, simwin::CallObserver& observer)
    : m_limit(limit),
      m_observer(observer),
      m_errorFile(fileOf(m_errors)),
      m_isWatched(makeEvent()),
      m_isOver(makeEvent()),
      m_handlers(
          [](void* collection, const Ending& ending) { static_cast<const LiveCollection*>(collection)->tell(ending); },
          this),
      m_watch(CreateThread(nullptr, 0, startWatch, this, 0, nullptr)) {
    if (!m_watch)
        throw Failure(describeSystemError("CreateThread", "the watch of the collection", GetLastError()));
    // A thread begins with the loader's lock. The library that is loaded next may never give that back.
    WaitForSingleObject(m_isWatched.get(), INFINITE);
}

LiveCollection::~LiveCollection() {
    SetEvent(m_isOver.get());
    WaitForSingleObject(m_watch.get(), INFINITE);
}

// A process that ends unloads the library, but that is not where the collection ended.
void LiveCollection::begins(const simwin::ObservedCall& call) {
    if (call.name != "ZRTSWRPFree")
        m_last.note(call);
    m_observer.begins(call);
}

DWORD WINAPI LiveCollection::startWatch(void* collection) {
    giveBackStack();
    static_cast<LiveCollection*>(collection)->watch();
    return 0;
}

void LiveCollection::watch() {
    const std::array<HANDLE, 2> signs = {m_isOver.get(), m_handlers.event()};
    const auto limit = static_cast<DWORD>(std::chrono::milliseconds(m_limit).count());
    const DWORD begin = GetTickCount();
    WaitingLine line(m_errorFile);
    SetEvent(m_isWatched.get());
    for (DWORD spent = 0; spent < limit; spent = GetTickCount() - begin) {
        const DWORD sign = WaitForMultipleObjects(signs.size(), signs.data(), FALSE, std::min(kSecond, limit - spent));
        if (sign == WAIT_TIMEOUT) {
            line.show(m_last.read());
            continue;
        }
        line.clear();
        if (sign == WAIT_OBJECT_0)
            return;
        tell(m_handlers.ending());
    }
    line.clear();
    tellHang();
}

LastWords LiveCollection::lastWords(std::string_view what) const {
    const Doing doing = m_last.read();
    LastWords words;
    words.add(what).add(doing.isQuestion ? " at its last question " : " while ").add(doing.text.data());
    return words;
}

void LiveCollection::tellHang() const {
    lastWords("the collection hung")
        .add(": ended after ")
        .addNumber(static_cast<std::uint64_t>(m_limit.count()))
        .add(" seconds; --timeout SECONDS gives it longer")
        .end(m_errorFile);
}

void LiveCollection::tell(const Ending& ending) const {
    switch (ending.how) {
        case Ending::How::Crash:
            lastWords("the collection crashed")
                .add(" (exception ")
                .addHex(ending.code, 8)
                .add(" at ")
                .addPlace(ending.address)
                .add(")")
                .end(m_errorFile);
        case Ending::How::Abort:
            lastWords("the collection was aborted")
                .add(" (SIGABRT at ")
                .addPlace(ending.address)
                .add(")")
                .end(m_errorFile);
        case Ending::How::Exit:
            lastWords("the library ended the process")
                .add(" (exit at ")
                .addPlace(ending.address)
                .add(")")
                .end(m_errorFile);
    }
    __builtin_unreachable();
}

}  // namespace kvstation
