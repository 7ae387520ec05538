#include "kvstation/sets/RowFileSet.h"

#include <cerrno>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/report/RecordFile.h"
#include "kvstation/rows/RowJson.h"
#include "simwin/text/ReadFile.h"

namespace kvstation {
namespace {

// A row is a record in JSON with little beside it.
constexpr std::size_t kLongestRow = kLongestRecordFile;

std::ifstream openRows(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(pathOf(path), error))
        throw Failure(path + " is no file");
    std::ifstream file(pathOf(path), std::ios::binary);
    if (!file)
        throw Failure(describeFileError(path, "read", errno));
    return file;
}

// The next line without its end, which is "\n" or "\r\n". False at the file's end, and for a line that is too long.
// `room` is where it is read to, of kLongestRow bytes.
bool readRow(std::ifstream& file, std::string& room, std::string& line) {
    file.getline(room.data(), static_cast<std::streamsize>(room.size()));
    if (!file)
        return false;
    line.assign(room.data());
    if (line.ends_with('\r'))
        line.pop_back();
    return true;
}

std::string placeOf(const std::string& path, std::size_t line) {
    return path + ": line " + std::to_string(line);
}

}  // namespace

bool isRowFile(const std::string& path) {
    std::ifstream file(pathOf(path), std::ios::binary);
    std::string room(kLongestRow, '\0');
    std::string line;
    return file && readRow(file, room, line) && nameInRow(line) && line.find("\"fields\"") != std::string::npos;
}

RowFileSet::RowFileSet(const std::string& path) : m_path(path), m_file(openRows(path)) {
    std::string room(kLongestRow, '\0');
    std::string text;
    Line line{1, 0, 0};
    for (; readRow(m_file, room, text); ++line.number, line.offset = m_file.tellg()) {
        line.length = text.size();
        addLine(text, line);
    }
    if (!m_file.eof())
        throw Failure(simwin::tooLong(placeOf(path, line.number), kLongestRow).what());
    m_file.clear();
    for (const auto& [name, place] : m_lines)
        m_names.push_back(name);
}

void RowFileSet::addLine(std::string_view text, const Line& line) {
    if (text.empty())
        return;
    const std::optional<std::string> name = nameInRow(text);
    if (!name) {
        m_wrong.push_back(placeOf(m_path, line.number) + ": this is no row of a station");
        return;
    }
    const auto [first, isNew] = m_lines.try_emplace(*name, line);
    if (!isNew)
        m_wrong.push_back(placeOf(m_path, line.number) + ": '" + *name + "' stands in line " +
                          std::to_string(first->second.number) + " already");
}

Record RowFileSet::record(const std::string& name) {
    const Line& line = m_lines.find(name)->second;
    std::string text(line.length, '\0');
    m_file.seekg(line.offset);
    if (!m_file.read(text.data(), static_cast<std::streamsize>(text.size())))
        throw Failure(placeOf(m_path, line.number) + " is no longer there");
    return recordInRow(text, placeOf(m_path, line.number));
}

}  // namespace kvstation
