#include "kvstation/sets/RowDatabase.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/report/JsonView.h"
#include "kvstation/sets/Database.h"
#include "kvstation/text/JoinWords.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace kvstation {
namespace {

std::string quotedName(std::string_view name) {
    return "\"" + std::string(name) + "\"";
}

// "name" TEXT PRIMARY KEY, "source" TEXT, ... of all columns.
std::string columnDefinitions() {
    std::string text;
    for (const AboutColumn& column : kAboutRow)
        text += (text.empty() ? quotedName(column.name) + " TEXT PRIMARY KEY"
                              : ", " + quotedName(column.name) + (column.isNumber ? " INTEGER" : " TEXT"));
    for (const Field& field : fields())
        text += ", " + quotedName(field.name) + (field.type == FieldType::Text ? " TEXT" : " INTEGER");
    return text;
}

std::string insertStatement() {
    std::vector<std::string_view> names;
    names.reserve(std::size(kAboutRow) + fields().size());
    for (const AboutColumn& column : kAboutRow)
        names.push_back(column.name);
    for (const Field& field : fields())
        names.push_back(field.name);
    const auto placeOf = [](std::string_view) { return "?"; };
    return "INSERT OR REPLACE INTO stations (" + joinWords(names, ", ", quotedName) + ") VALUES (" +
           joinWords(names, ", ", placeOf) + ")";
}

Cell cellOf(const Record& record, std::size_t field) {
    if (fields()[field].type != FieldType::Text)
        return {Cell::Kind::Number, std::to_string(record[field].number)};
    if (!tellsAll(record, field))
        return {Cell::Kind::Bytes, record[field].bytes};
    return {Cell::Kind::Text, record[field].text};
}

void bind(Statement& statement, int place, const Cell& cell) {
    switch (cell.kind) {
        case Cell::Kind::Nothing:
            return statement.bindNothing(place);
        case Cell::Kind::Text:
            return statement.bindText(place, cell.value);
        case Cell::Kind::Number:
            return statement.bindNumber(place, std::stoll(cell.value));
        case Cell::Kind::Bytes:
            return statement.bindBytes(place, cell.value);
    }
}

// Behind its last letter stands a zero byte.
constexpr char kDatabaseStart[] = "SQLite format 3";

std::string selectStatement() {
    // With the table's name: a quoted name alone that is no column would be a text.
    std::string columns = "stations." + quotedName("codePage");
    for (const Field& field : fields())
        columns += ", stations." + quotedName(field.name);
    return "SELECT " + columns + " FROM stations WHERE name = ?";
}

nlohmann::ordered_json valueIn(const Statement& row, int column) {
    if (row.isNothing(column))
        return nullptr;
    if (row.isBytes(column))
        return {{"hex", simwin::hexText(row.text(column), ' ')}};
    if (row.isNumber(column) && row.number(column) >= 0)
        return static_cast<std::uint64_t>(row.number(column));
    if (row.isNumber(column))
        return row.number(column);
    return row.text(column);
}

// The file as it is ready to be written into.
Database begin(const std::string& file) {
    Database database(file, Database::Access::Write);
    database.run("BEGIN IMMEDIATE");
    database.run("CREATE TABLE IF NOT EXISTS stations (" + columnDefinitions() + ")");
    return database;
}

}  // namespace

std::vector<Cell> databaseCells(const StationRow& row) {
    std::vector<Cell> cells;
    const auto about = aboutRow(row);
    for (std::size_t i = 0; i < about.size(); ++i)
        cells.push_back(about[i] ? Cell{kAboutRow[i].isNumber ? Cell::Kind::Number : Cell::Kind::Text, *about[i]}
                                 : Cell{});
    for (std::size_t i = 0; i < fields().size(); ++i)
        cells.push_back(cellOf(row.report.record, i));
    return cells;
}

struct DatabaseWriter::Open {
    explicit Open(const std::string& file) : database(begin(file)), insert(database, insertStatement()) {}

    Database database;
    Statement insert;
};

DatabaseWriter::DatabaseWriter(const std::string& file) : m_open(std::make_unique<Open>(file)) {}
DatabaseWriter::~DatabaseWriter() = default;  // what is not finished is rolled back

void DatabaseWriter::put(const std::vector<Cell>& cells) {
    for (std::size_t i = 0; i < cells.size(); ++i)
        bind(m_open->insert, static_cast<int>(i + 1), cells[i]);
    m_open->insert.step();
}

void DatabaseWriter::finish() {
    m_open->database.run("COMMIT");
}

bool isDatabase(const std::string& path) {
    char start[sizeof kDatabaseStart] = {};
    std::ifstream(pathOf(path), std::ios::binary).read(start, sizeof kDatabaseStart);
    return std::string_view(start, sizeof start) == std::string_view(kDatabaseStart, sizeof kDatabaseStart);
}

struct DatabaseSet::Open {
    explicit Open(const std::string& file)
        : database(file, Database::Access::Read), select(database, selectStatement()) {}

    Database database;
    Statement select;
};

DatabaseSet::DatabaseSet(const std::string& file) : m_open(std::make_unique<Open>(file)) {
    Statement names(m_open->database, "SELECT name FROM stations ORDER BY name");
    while (names.step())
        m_names.push_back(names.text(0));
}
DatabaseSet::~DatabaseSet() = default;

Record DatabaseSet::record(const std::string& name) {
    Statement& select = m_open->select;
    const std::string where = m_open->database.file() + ": '" + name + "'";
    select.bindText(1, name);
    if (!select.step())
        throw Failure(where + " is no longer there");
    const std::int64_t codePage = select.number(0);
    nlohmann::ordered_json object;
    for (std::size_t i = 0; i < fields().size(); ++i)
        object[std::string(fields()[i].name)] = valueIn(select, static_cast<int>(i + 1));
    select.step();
    if (codePage < 0 || codePage > simwin::kUtf8CodePage || !simwin::isKnownCodePage(static_cast<unsigned>(codePage)))
        throw Failure(where + ": codePage is none of the known code pages: " + simwin::listOfCodePages());
    const simwin::CodePageScope scope(static_cast<unsigned>(codePage));
    return recordFromFields(object, where);
}

}  // namespace kvstation
