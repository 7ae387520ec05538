#include "kvstation/record/FixedDrives.h"

#include <charconv>
#include <optional>

namespace kvstation {
namespace {

// Takes a list apart from its front.
class ListReader {
  public:
    explicit ListReader(std::string_view text) : m_text(text) {}

    bool skip(std::string_view word) {
        if (!m_text.starts_with(word))
            return false;
        m_text.remove_prefix(word.size());
        return true;
    }

    std::optional<char> letter() {
        if (m_text.empty() || m_text.front() < 'A' || m_text.front() > 'Z')
            return std::nullopt;
        const char found = m_text.front();
        m_text.remove_prefix(1);
        return found;
    }

    // The text up to the word, which is skipped too.
    std::optional<std::string> upTo(std::string_view word) {
        const std::size_t end = m_text.find(word);
        if (end == std::string_view::npos)
            return std::nullopt;
        std::string found(m_text.substr(0, end));
        m_text.remove_prefix(end + word.size());
        return found;
    }

    std::optional<std::int64_t> number() {
        std::int64_t value = 0;
        const auto [end, error] = std::from_chars(m_text.data(), m_text.data() + m_text.size(), value);
        if (error != std::errc())
            return std::nullopt;
        m_text.remove_prefix(static_cast<std::size_t>(end - m_text.data()));
        return value;
    }

    std::string_view rest() const { return m_text; }

  private:
    std::string_view m_text;
};

// "C(SYSTEM):(" or "C:(": a label may hold brackets itself.
std::optional<std::string> readLabel(ListReader& list) {
    if (list.skip(":("))
        return std::string();
    return list.skip("(") ? list.upTo("):(") : std::nullopt;
}

std::optional<FixedDrive> readDrive(ListReader& list) {
    const auto letter = list.letter();
    const auto label = letter ? readLabel(list) : std::nullopt;
    const auto fileSystem = label ? list.upTo(":") : std::nullopt;
    const auto total = fileSystem ? list.number() : std::nullopt;
    const auto percent = total && list.skip(" MB ") ? list.number() : std::nullopt;
    if (!percent || !list.skip("% free) "))
        return std::nullopt;
    return FixedDrive{*letter, *label, *fileSystem, *total, *percent};
}

}  // namespace

FixedDriveList parseFixedDrives(std::string_view szFixedDrives) {
    FixedDriveList found;
    ListReader list(szFixedDrives);
    while (!list.rest().empty()) {
        const ListReader before = list;
        std::optional<FixedDrive> drive = readDrive(list);
        if (!drive) {
            found.rest = before.rest();
            break;
        }
        found.drives.push_back(std::move(*drive));
        list.skip(";");
    }
    return found;
}

}  // namespace kvstation
