// Windows handles that close themselves. Windows only.
#pragma once

#include <memory>

#include "framework/Windows.h"

namespace kvstation {

struct CloseHandleOnce {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

class OwnedHandle {
  public:
    // Takes what Windows gave, null or INVALID_HANDLE_VALUE when the call failed.
    explicit OwnedHandle(HANDLE handle) : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}

    HANDLE get() const { return m_handle.get(); }
    explicit operator bool() const { return m_handle != nullptr; }

  private:
    std::unique_ptr<void, CloseHandleOnce> m_handle;
};

}  // namespace kvstation
