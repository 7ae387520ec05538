// The handles that a child process inherits, and no others. Windows only.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "framework/Windows.h"

namespace kvstation {

// A function that Windows has only since Vista: imported, it would keep the tool from starting on an older one.
template <class Function>
Function newerFunction(const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

// For STARTUPINFOEXW. The handles must be such as can be inherited.
class InheritanceList {
  public:
    explicit InheritanceList(std::vector<HANDLE> handles) : m_handles(std::move(handles)) {
        SIZE_T size = 0;
        if (m_initialize == nullptr || m_update == nullptr || m_delete == nullptr)
            return;
        m_initialize(nullptr, 1, 0, &size);
        m_room.resize(size);
        if (m_initialize(room(), 1, 0, &size))
            m_list = room();
        if (m_list != nullptr && !m_update(m_list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_handles.data(),
                                           m_handles.size() * sizeof(HANDLE), nullptr, nullptr))
            release();
    }
    InheritanceList(const InheritanceList&) = delete;
    InheritanceList& operator=(const InheritanceList&) = delete;
    ~InheritanceList() { release(); }

    // Null where Windows has no such lists: a child then inherits all that can be inherited.
    LPPROC_THREAD_ATTRIBUTE_LIST get() const { return m_list; }

  private:
    LPPROC_THREAD_ATTRIBUTE_LIST room() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_room.data()); }
    void release() {
        if (m_list != nullptr)
            m_delete(m_list);
        m_list = nullptr;
    }

    const decltype(&InitializeProcThreadAttributeList) m_initialize =
        newerFunction<decltype(&InitializeProcThreadAttributeList)>("InitializeProcThreadAttributeList");
    const decltype(&UpdateProcThreadAttribute) m_update =
        newerFunction<decltype(&UpdateProcThreadAttribute)>("UpdateProcThreadAttribute");
    const decltype(&DeleteProcThreadAttributeList) m_delete =
        newerFunction<decltype(&DeleteProcThreadAttributeList)>("DeleteProcThreadAttributeList");

    std::vector<HANDLE> m_handles;  // the list refers to them
    std::vector<std::byte> m_room;
    LPPROC_THREAD_ATTRIBUTE_LIST m_list = nullptr;
};

}  // namespace kvstation
