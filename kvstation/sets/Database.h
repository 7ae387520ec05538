// SQLite files. All functions throw Failure, in one line with the file's name.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace kvstation {

class Database {
  public:
    enum class Access { Read, Write };  // Write makes the file where it is missing
    Database(const std::string& file, Access access);

    void run(const std::string& statement);

    sqlite3* handle() const { return m_database.get(); }
    const std::string& file() const { return m_file; }
    [[noreturn]] void fail() const;

  private:
    struct Close {
        void operator()(sqlite3* database) const;
    };
    std::string m_file;
    std::unique_ptr<sqlite3, Close> m_database;
};

// One statement, for many runs. The database must outlive it.
class Statement {
  public:
    Statement(const Database& database, const std::string& text);

    // By the place from 1 on.
    void bindText(int place, std::string_view text);
    void bindBytes(int place, std::string_view bytes);
    void bindNumber(int place, std::int64_t number);
    void bindNothing(int place);

    // True: there is a row. False: it is over, and ready to run again.
    bool step();

    // Of the row's columns from 0 on.
    bool isNothing(int column) const;
    bool isBytes(int column) const;
    bool isNumber(int column) const;
    std::string text(int column) const;
    std::int64_t number(int column) const;

  private:
    void check(int result) const;

    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    const Database& m_database;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

}  // namespace kvstation
