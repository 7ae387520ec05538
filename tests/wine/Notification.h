#pragma once

// GoogleTest's own Notification needs std::mutex, which MinGW's win32 thread model does not have. This one takes its
// place (GTEST_HAS_NOTIFICATION_) and is included before GoogleTest's headers.

namespace testing::internal {

// Holds threads until one of them notifies the others, once.
class Notification {
  public:
    Notification();
    Notification(const Notification&) = delete;
    Notification& operator=(const Notification&) = delete;
    ~Notification();

    void Notify();
    void WaitForNotification();

  private:
    void* m_event;
};

}  // namespace testing::internal
