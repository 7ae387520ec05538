#pragma once

#include <cstddef>
#include <string_view>

// Writes a text into a buffer of a fixed size: what does not fit is cut, and the text always stands terminated.
class TextWriter {
  public:
    // The size counts the terminator and is at least 1.
    TextWriter(char* buffer, std::size_t size) noexcept;

    void Append(std::string_view text) noexcept;

    // In decimal, with leading zeros up to `digits`.
    void AppendNumber(long long number, std::size_t digits = 1) noexcept;

    // The bytes written so far, without the terminator.
    std::size_t Length() const noexcept { return m_length; }

    bool WasCut() const noexcept { return m_cut; }

  private:
    char* m_buffer;
    std::size_t m_limit;
    std::size_t m_length = 0;
    bool m_cut = false;
};

// Fills a caller's buffer with the text, cut to size - 1 bytes and terminated. False when no byte of text arrived:
// the text is empty, the buffer null or the size too small.
bool FillText(char* buffer, int size, std::string_view text) noexcept;
