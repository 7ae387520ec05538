// Exceptions of several threads at the same moment, with the state that the libraries bring along linked into this
// program too.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "framework/Windows.h"
#include "kvcstat/common/Handles.h"

namespace kvtest {
namespace {

using OwnedHandle = UniqueHandle<HANDLE, &CloseHandle>;

// What a thread below and the test tell each other.
struct Meeting {
    int thrown;
    OwnedHandle isHandling{CreateEventA(nullptr, TRUE, FALSE, nullptr)};
    OwnedHandle mayGoOn{CreateEventA(nullptr, TRUE, FALSE, nullptr)};
    int thrownAgain = 0;
};

int ThrownAgain() {
    try {
        throw;
    } catch (int again) {
        return again;
    }
}

DWORD WINAPI HandleOneMeanwhile(void* place) {
    Meeting& meeting = *static_cast<Meeting*>(place);
    try {
        throw meeting.thrown;
    } catch (int) {
        SetEvent(meeting.isHandling.get());
        WaitForSingleObject(meeting.mayGoOn.get(), INFINITE);
        meeting.thrownAgain = ThrownAgain();
    }
    return 0;
}

TEST(ExceptionState, IsEachThreadsOwn) {
    std::array<Meeting, 3> meetings = {{{1}, {2}, {3}}};
    std::vector<OwnedHandle> threads;
    for (Meeting& meeting : meetings) {
        threads.emplace_back(CreateThread(nullptr, 0, HandleOneMeanwhile, &meeting, 0, nullptr));
        WaitForSingleObject(meeting.isHandling.get(), INFINITE);
    }
    try {
        throw 4;
    } catch (int) {
        for (std::size_t i = 0; i < meetings.size(); ++i) {
            SetEvent(meetings[i].mayGoOn.get());
            WaitForSingleObject(threads[i].get(), INFINITE);
        }
        EXPECT_EQ(ThrownAgain(), 4);
    }
    for (const Meeting& meeting : meetings)
        EXPECT_EQ(meeting.thrownAgain, meeting.thrown);
}

}  // namespace
}  // namespace kvtest
