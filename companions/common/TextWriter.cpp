#include "companions/common/TextWriter.h"

#include <algorithm>
#include <charconv>
#include <cstring>

TextWriter::TextWriter(char* buffer, std::size_t size) noexcept : m_buffer(buffer), m_limit(size - 1) {
    m_buffer[0] = '\0';
}

void TextWriter::Append(std::string_view text) noexcept {
    const std::size_t count = std::min(text.size(), m_limit - m_length);
    if (count > 0)
        std::memcpy(m_buffer + m_length, text.data(), count);
    m_length += count;
    m_buffer[m_length] = '\0';
    m_cut = m_cut || count < text.size();
}

void TextWriter::AppendNumber(long long number, std::size_t digits) noexcept {
    char text[24];
    const auto end = std::to_chars(text, text + sizeof text, number).ptr;
    const auto length = static_cast<std::size_t>(end - text);
    for (std::size_t zeros = length; zeros < digits; ++zeros)
        Append("0");
    Append({text, length});
}

bool FillText(char* buffer, int size, std::string_view text) noexcept {
    if (buffer == nullptr || size < 1)
        return false;
    TextWriter writer(buffer, static_cast<std::size_t>(size));
    writer.Append(text);
    return writer.Length() > 0;
}
