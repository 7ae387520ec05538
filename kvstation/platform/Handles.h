// Windows handles that close themselves. Windows only.
#pragma once

#include "framework/Windows.h"
#include "kvcstat/common/Handles.h"

namespace kvstation {

class OwnedHandle {
  public:
    // Takes what Windows gave, null or INVALID_HANDLE_VALUE when the call failed.
    explicit OwnedHandle(HANDLE handle) : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}

    HANDLE get() const { return m_handle.get(); }
    explicit operator bool() const { return m_handle != nullptr; }

  private:
    UniqueHandle<HANDLE, &CloseHandle> m_handle;
};

}  // namespace kvstation
