#pragma once

// Root path of a drive, such as "C:\".
class DriveRoot {
  public:
    explicit constexpr DriveRoot(char letter) noexcept : m_path{letter, ':', '\\', '\0'} {}
    constexpr operator const char*() const noexcept { return m_path; }

  private:
    char m_path[4];
};
