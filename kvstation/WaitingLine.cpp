#include "kvstation/WaitingLine.h"

#include <algorithm>
#include <array>

#include "kvstation/VisibleText.h"

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
    clear();
    std::array<char, Doing::kLongest + 64> text{};
    std::size_t length = 0;
    for (const std::string_view part :
         {std::string_view("kvstation: "), std::string_view(doing.isQuestion ? "waiting for " : ""),
          std::string_view(doing.text.data())})
        length += part.copy(text.data() + length, text.size() - length);
    length = bytesOf({text.data(), length}, room);
    write(text.data(), length);
    m_columns = columns({text.data(), length});
}

// By blanks: consoles before Windows 10 know no sequences.
void WaitingLine::clear() {
    std::array<char, 64> blanks{};
    blanks.fill(' ');
    if (m_columns == 0)
        return;
    write("\r", 1);
    for (; m_columns != 0; m_columns -= std::min(m_columns, blanks.size()))
        write(blanks.data(), std::min(m_columns, blanks.size()));
    write("\r", 1);
}

void WaitingLine::write(const char* text, std::size_t length) const {
    DWORD written = 0;
    WriteFile(m_file, text, static_cast<DWORD>(length), &written, nullptr);
}

}  // namespace kvstation
