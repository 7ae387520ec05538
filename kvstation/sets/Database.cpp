#include "kvstation/sets/Database.h"

#include <sqlite3.h>

#include <filesystem>

#include "kvstation/platform/Errors.h"

namespace kvstation {

void Database::Close::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

Database::Database(const std::string& file, Access access) : m_file(file) {
    const int flags = access == Access::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    sqlite3* opened = nullptr;
    // To SQLite ":memory:" and "file:x" are no file's names; with a folder before them they are.
    const std::string path = std::filesystem::absolute(file).string();
    const int result = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
    m_database.reset(opened);
    if (result != SQLITE_OK)
        fail();
}

void Database::fail() const {
    throw Failure(m_file + ": " + (m_database ? sqlite3_errmsg(m_database.get()) : "no memory") + " (SQLite error " +
                  std::to_string(sqlite3_extended_errcode(m_database.get())) + ")");
}

void Database::run(const std::string& statement) {
    if (sqlite3_exec(m_database.get(), statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail();
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Statement::Statement(const Database& database, const std::string& text) : m_database(database) {
    sqlite3_stmt* prepared = nullptr;
    check(sqlite3_prepare_v2(database.handle(), text.data(), static_cast<int>(text.size()), &prepared, nullptr));
    m_statement.reset(prepared);
}

void Statement::check(int result) const {
    if (result != SQLITE_OK)
        m_database.fail();
}

void Statement::bindText(int place, std::string_view text) {
    check(sqlite3_bind_text64(m_statement.get(), place, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bindBytes(int place, std::string_view bytes) {
    check(sqlite3_bind_blob64(m_statement.get(), place, bytes.data(), bytes.size(), SQLITE_TRANSIENT));
}

void Statement::bindNumber(int place, std::int64_t number) {
    check(sqlite3_bind_int64(m_statement.get(), place, number));
}

void Statement::bindNothing(int place) {
    check(sqlite3_bind_null(m_statement.get(), place));
}

bool Statement::step() {
    const int result = sqlite3_step(m_statement.get());
    if (result == SQLITE_ROW)
        return true;
    if (result != SQLITE_DONE)
        m_database.fail();
    check(sqlite3_reset(m_statement.get()));
    return false;
}

bool Statement::isNothing(int column) const {
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

bool Statement::isBytes(int column) const {
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_BLOB;
}

bool Statement::isNumber(int column) const {
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_INTEGER;
}

std::string Statement::text(int column) const {
    const void* bytes = sqlite3_column_blob(m_statement.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
    return bytes == nullptr ? std::string() : std::string(static_cast<const char*>(bytes), size);
}

std::int64_t Statement::number(int column) const {
    return sqlite3_column_int64(m_statement.get(), column);
}

}  // namespace kvstation
