#include "companions/zrtrc/TraceLine.h"

#include <cstdlib>
#include <string_view>

#include "companions/common/TextWriter.h"

namespace {

constexpr std::string_view kCutMark = "...";
constexpr std::string_view kLineEnd = "\r\n";

void AppendTime(TextWriter& line, const TraceTime& time) noexcept {
    line.AppendNumber(time.year, 4);
    line.Append("-");
    line.AppendNumber(time.month, 2);
    line.Append("-");
    line.AppendNumber(time.day, 2);
    line.Append(" ");
    line.AppendNumber(time.hour, 2);
    line.Append(":");
    line.AppendNumber(time.minute, 2);
    line.Append(":");
    line.AppendNumber(time.second, 2);
    line.Append(".");
    line.AppendNumber(time.millisecond, 3);
}

bool IsControl(char character) noexcept {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

void AppendEscape(TextWriter& line, char control) noexcept {
    switch (control) {
        case '\n':
            return line.Append("\\n");
        case '\r':
            return line.Append("\\r");
        case '\t':
            return line.Append("\\t");
        default: {
            constexpr std::string_view kDigits = "0123456789ABCDEF";
            const auto code = static_cast<unsigned char>(control);
            const char escape[] = {'\\', 'x', kDigits[code / 16], kDigits[code % 16]};
            return line.Append({escape, sizeof escape});
        }
    }
}

void AppendEscaped(TextWriter& line, std::string_view text) noexcept {
    while (!text.empty() && !line.WasCut()) {
        std::size_t plain = 0;
        while (plain < text.size() && !IsControl(text[plain]))
            ++plain;
        line.Append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (!text.empty()) {
            AppendEscape(line, text.front());
            text.remove_prefix(1);
        }
    }
}

std::string_view WithoutLineEnd(std::string_view text) noexcept {
    for (const char end : {'\n', '\r'}) {
        if (!text.ends_with(end))
            break;
        text.remove_suffix(1);
    }
    return text;
}

std::string_view OrEmpty(const char* text) noexcept {
    return text != nullptr ? text : "";
}

}  // namespace

std::size_t FormatTraceLine(const TraceEntry& entry, char (&line)[kTraceLineSize]) noexcept {
    // Room for the ends is kept free, so that even a cut line is a whole one.
    TextWriter writer(line, kTraceLineSize - kCutMark.size() - kLineEnd.size());
    AppendTime(writer, entry.time);
    writer.Append(" [");
    writer.AppendNumber(static_cast<long long>(entry.process));
    writer.Append("] ");
    writer.AppendNumber(entry.level);
    writer.Append(" ");
    AppendEscaped(writer, OrEmpty(entry.component));
    writer.Append(": ");
    AppendEscaped(writer, WithoutLineEnd(OrEmpty(entry.text)));

    TextWriter end(line + writer.Length(), kTraceLineSize - writer.Length());
    end.Append(writer.WasCut() ? kCutMark : "");
    end.Append(kLineEnd);
    return writer.Length() + end.Length();
}

bool IsLevelTraced(int level, const char* limit) noexcept {
    char* end = nullptr;
    const long highest = limit != nullptr ? std::strtol(limit, &end, 10) : 0;
    return end == limit || level <= highest;
}
