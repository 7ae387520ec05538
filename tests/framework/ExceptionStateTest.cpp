// Exceptions of several threads at the same moment, with the state that the libraries bring along linked into this
// program too.
#include <gtest/gtest.h>

#include "framework/Windows.h"
#include "kvcstat/common/Handles.h"

namespace kvtest {
namespace {

using OwnedHandle = UniqueHandle<HANDLE, &CloseHandle>;

// What the thread below and the test tell each other.
struct Meeting {
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
        throw 1;
    } catch (int) {
        SetEvent(meeting.isHandling.get());
        WaitForSingleObject(meeting.mayGoOn.get(), INFINITE);
        meeting.thrownAgain = ThrownAgain();
    }
    return 0;
}

TEST(ExceptionState, IsEachThreadsOwn) {
    Meeting meeting;
    const OwnedHandle thread(CreateThread(nullptr, 0, HandleOneMeanwhile, &meeting, 0, nullptr));
    WaitForSingleObject(meeting.isHandling.get(), INFINITE);
    try {
        throw 2;
    } catch (int) {
        SetEvent(meeting.mayGoOn.get());
        WaitForSingleObject(thread.get(), INFINITE);
        EXPECT_EQ(ThrownAgain(), 2);
    }
    EXPECT_EQ(meeting.thrownAgain, 1);
}

}  // namespace
}  // namespace kvtest
