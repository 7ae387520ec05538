#pragma once

#include <cstddef>
#include <string_view>

#include "framework/Windows.h"

// Windows.h first: this header needs its types.
#include <wtsapi32.h>

// What Windows answers to one question about the session of this process. wtsapi32.dll is loaded by the first question;
// on a station that has none, or whose answer fails, the answer is empty.
class SessionAnswer {
  public:
    explicit SessionAnswer(WTS_INFO_CLASS question) noexcept;
    SessionAnswer(const SessionAnswer&) = delete;
    SessionAnswer& operator=(const SessionAnswer&) = delete;
    ~SessionAnswer();

    const char* Data() const noexcept { return m_data; }
    std::size_t Size() const noexcept { return m_data != nullptr ? m_size : 0; }

    // The answer as a text, which ends at its terminator or with the answer.
    std::string_view Text() const noexcept;

  private:
    char* m_data = nullptr;
    DWORD m_size = 0;
};

// Gives up wtsapi32.dll.
void ReleaseSessionLibrary() noexcept;
