#include "kvstation/collect/WaitingLine.h"

#include <algorithm>
#include <array>

#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

// One column less than the terminal has: a line that fills the last one would break. 0 where there is no terminal.
std::size_t roomOf(HANDLE file) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!GetConsoleScreenBufferInfo(file, &info))
        return 0;
    return static_cast<std::size_t>(std::max(info.dwSize.X - 1, 0));
}

}  // namespace

void WaitingLine::show(const Doing& doing) {
    const std::size_t room = roomOf(m_file);
    if (room == 0)
        return;
    std::array<char, sizeof m_room> text{};
    std::size_t length = 0;
    for (const std::string_view part :
         {std::string_view("kvstation: "), std::string_view(doing.isQuestion ? "waiting for " : ""),
          std::string_view(doing.text.data())})
        length += part.copy(text.data() + length, text.size() - length);
    const std::string_view line(text.data(), bytesWithin({text.data(), length}, room));
    if (line == m_line)
        return;
    clear();
    m_line = {m_room.data(), line.copy(m_room.data(), m_room.size())};
    write(m_line);
}

// By blanks: consoles before Windows 10 know no sequences.
void WaitingLine::clear() {
    constexpr std::string_view kBlanks = "                ";
    std::size_t left = columns(m_line);
    if (left == 0)
        return;
    write("\r");
    for (; left > kBlanks.size(); left -= kBlanks.size())
        write(kBlanks);
    write(kBlanks.substr(0, left));
    write("\r");
    m_line = {};
}

void WaitingLine::write(std::string_view text) const {
    DWORD written = 0;
    WriteFile(m_file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace kvstation
