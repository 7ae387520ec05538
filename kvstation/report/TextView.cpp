#include "kvstation/report/TextView.h"

#include <algorithm>

#include "kvstation/platform/Output.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kColumnGap = 2;
constexpr std::size_t kNarrowestValue = 20;

class TextWriter {
  public:
    explicit TextWriter(const TextOptions& options) : m_options(options) {}

    void heading(std::string_view group) {
        if (!m_text.empty())
            m_text += '\n';
        append(kBold, group);
        m_text += '\n';
    }

    void field(std::string_view name, std::string_view value, std::string_view remark) {
        m_text.append(kIndent, ' ');
        append(kCyan, name);
        m_text.append(valueColumn() - kIndent - name.size(), ' ');
        appendWrapped(value, valueColumn());
        if (!remark.empty()) {
            m_text += ' ';
            append(kDim, remark);
        }
        m_text += '\n';
    }

    void remark(std::string_view label, std::string_view words) {
        if (!m_text.empty())
            m_text += '\n';
        m_text += label;
        appendWrapped(words, label.size());
        m_text += '\n';
    }

    std::string take() { return std::move(m_text); }

  private:
    static std::size_t valueColumn() {
        static const std::size_t longest =
            std::ranges::max(fields(), {}, [](const Field& field) { return field.name.size(); }).name.size();
        return kIndent + longest + kColumnGap;
    }

    void append(std::string_view colour, std::string_view text) { m_text += coloured(colour, text, m_options.colours); }

    // Breaks behind an item of a list, else behind a blank, else anywhere; the rest stands below the first line.
    void appendWrapped(std::string_view text, std::size_t column) {
        if (m_options.width < column + kNarrowestValue) {
            m_text += text;
            return;
        }
        const std::size_t room = m_options.width - column;
        while (columns(text) > room) {
            const std::size_t end = breakBefore(text, room);
            m_text += text.substr(0, end);
            m_text += '\n';
            m_text.append(column, ' ');
            text.remove_prefix(end);
        }
        m_text += text;
    }

    static std::size_t breakBefore(std::string_view text, std::size_t room) {
        const std::size_t end = bytesWithin(text, room);
        for (const char separator : {';', ' '})
            if (const std::size_t place = text.substr(0, end).rfind(separator); place != std::string_view::npos)
                return place + 1;
        return end;
    }

    const TextOptions& m_options;
    std::string m_text;
};

// Blanks at the end cannot be seen.
std::string shown(const Record& record, std::size_t field) {
    std::string text = visible(record.textOf(field));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

void writeGroup(TextWriter& writer, const Report& report, std::string_view group, bool all) {
    bool hasHeading = false;
    for (std::size_t i = 0; i < fields().size(); ++i) {
        const Field& field = fields()[i];
        if (field.group != group || (report.record.isEmpty(i) && !all))
            continue;
        if (!hasHeading)
            writer.heading(group);
        hasHeading = true;
        const bool takesProduct = field.name == "szOS" && !report.product.empty();
        writer.field(field.name, shown(report.record, i), takesProduct ? "(" + report.product + ")" : "");
    }
}

std::string emptyFields(const Record& record) {
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < fields().size(); ++i)
        if (record.isEmpty(i))
            names.push_back(fields()[i].name);
    return joinWords(names, ", ");
}

}  // namespace

std::string textView(const Report& report, const TextOptions& options) {
    TextWriter writer(options);
    for (const Group& group : groups())
        writeGroup(writer, report, group.name, options.all);
    const std::string empty = emptyFields(report.record);
    if (!options.all && !empty.empty())
        writer.remark("Empty or 0: ", empty);
    if (!report.unknown.empty())
        writer.remark("Not written down in this station: ", joinWords(report.unknown, ", ", visible));
    return writer.take();
}

}  // namespace kvstation
