// Texts in a stream of bytes, each with its length before it: what the tool's processes tell one another.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

void appendFrame(std::string& bytes, std::string_view text);

// Those in bytes that are there whole.
std::vector<std::string_view> framesIn(std::string_view bytes);

// Takes the texts out of bytes as they come.
class FrameReader {
  public:
    void add(std::string_view bytes) { m_bytes += bytes; }

    // The next one, if it is there whole; valid until the next call of either.
    std::optional<std::string_view> next();

  private:
    std::string m_bytes;
    std::size_t m_read = 0;  // how much of them was given out
};

}  // namespace kvstation
