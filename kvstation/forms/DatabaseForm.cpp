#include "kvstation/forms/RowForm.h"
#ifndef _WIN32
#include "kvstation/platform/Files.h"
#include "kvstation/platform/Output.h"
#include "kvstation/sets/RowDatabase.h"
#endif

namespace kvstation {
namespace {

#ifdef _WIN32
// Debian has no SQLite for Windows.
std::string checkDatabase(const std::string&) {
    return "needs the native (Linux) tool; rows that are printed come here too";
}
constexpr decltype(RowFormKind::make) makeDatabase = nullptr;
#else
class DatabaseForm : public RowForm {
  public:
    explicit DatabaseForm(const std::string& file) : m_file(file) {}

    std::string encode(const StationRow& row) override { return cellBytes(databaseCells(row)); }
    void begin() override { m_writer = std::make_unique<DatabaseWriter>(m_file); }
    void take(std::string_view encoded) override { m_writer->put(cellsFrom(encoded)); }
    void finish() override { m_writer->finish(); }

  private:
    std::string m_file;
    std::unique_ptr<DatabaseWriter> m_writer;
};

std::string checkDatabase(const std::string& file) {
    return file == kStandardOutputName ? "an SQLite file cannot go to standard output" : checkFileName(file);
}
std::unique_ptr<RowForm> makeDatabase(const FieldList&, const std::string& file) {
    return std::make_unique<DatabaseForm>(file);
}
#endif

}  // namespace

const RowFormKind kDatabaseForm = {
    "--sqlite",
    "Write the records into the table \"stations\" of the SQLite file FILE, in the place of those of the same names "
    "(native tool)",
    makeDatabase, checkDatabase};

}  // namespace kvstation
