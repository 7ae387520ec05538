// A buffer whose every byte is known before a call, with more behind it that no call may touch.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace conformance {

class Room {
  public:
    explicit Room(std::size_t size) : m_size(size), m_bytes(size + kBehind, kFill) {}

    std::size_t size() const { return m_size; }
    char* data() { return m_bytes.data(); }
    unsigned char* bytes() { return reinterpret_cast<unsigned char*>(m_bytes.data()); }

    std::string_view first(std::size_t count) const { return std::string_view(m_bytes).substr(0, count); }
    // Up to the first NUL.
    std::string_view text() const {
        const std::string_view all = first(m_size);
        return all.substr(0, all.find('\0'));
    }
    bool isUntouchedFrom(std::size_t offset) const {
        return std::all_of(m_bytes.begin() + static_cast<std::ptrdiff_t>(offset), m_bytes.end(),
                           [](char byte) { return byte == kFill; });
    }
    bool isUntouched() const { return isUntouchedFrom(0); }
    bool isUntouchedBehind() const { return isUntouchedFrom(m_size); }

  private:
    static constexpr std::size_t kBehind = 64;
    static constexpr char kFill = '\xA5';

    std::size_t m_size;
    std::string m_bytes;
};

}  // namespace conformance
