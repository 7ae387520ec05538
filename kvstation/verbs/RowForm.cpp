#include "kvstation/verbs/RowForm.h"

#include <CLI/App.hpp>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/platform/Output.h"
#include "kvstation/platform/PartProcess.h"
#include "kvstation/report/TextView.h"
#include "kvstation/rows/Frames.h"
#include "kvstation/rows/RowCsv.h"
#include "kvstation/rows/RowJson.h"
#include "kvstation/rows/RowTable.h"
#include "kvstation/sets/ResultBuffer.h"
#include "kvstation/text/VisibleText.h"
#ifndef _WIN32
#include "kvstation/sets/RowDatabase.h"
#endif

namespace kvstation {

struct RowFormKind {
    using Make = std::unique_ptr<RowForm>(const FieldList& fields, const std::string& file);

    const char* option;
    const char* help;
    Make* make;
    // Of a form that goes into one file and has all fields: what is wrong with the file's name. Others are printed.
    std::string (*checkFile)(const std::string& file) = nullptr;
};

namespace {

// Rows that are text when they are encoded, behind a header.
class TextForm : public RowForm {
  public:
    using Encode = std::function<std::string(const StationRow&)>;

    explicit TextForm(Encode encode, std::string header = {})
        : m_encode(std::move(encode)), m_header(std::move(header)) {}

    std::string encode(const StationRow& row) override { return m_encode(row); }
    void begin() override { m_output.add(m_header); }
    void take(std::string_view encoded) override { m_output.add(encoded); }
    void finish() override { m_output.flush(); }

  private:
    Encode m_encode;
    std::string m_header;
    ResultBuffer m_output;
};

// Each record as it is shown by itself, below its name.
std::unique_ptr<RowForm> makeViews(const TextOptions& options) {
    return std::make_unique<TextForm>(
        [options](const StationRow& row) { return visible(row.name) + ":\n" + textView(row.report, options) + "\n"; });
}

class TableForm : public RowForm {
  public:
    explicit TableForm(FieldList fields) : m_fields(std::move(fields)), m_table(m_fields) {}

    std::string encode(const StationRow& row) override {
        std::string bytes;
        for (const std::string& cell : tableCells(row, m_fields))
            appendFrame(bytes, cell);
        return bytes;
    }
    void take(std::string_view encoded) override {
        std::vector<std::string> cells;
        for (const std::string_view cell : framesIn(encoded))
            cells.emplace_back(cell);
        m_output.add(m_table.add(std::move(cells)));
    }
    void finish() override {
        m_output.add(m_table.finish());
        m_output.flush();
    }

  private:
    FieldList m_fields;
    TableWriter m_table;
    ResultBuffer m_output;
};

#ifdef _WIN32
// Debian has no SQLite for Windows.
std::string checkDatabase(const std::string&) {
    return "needs the native (Linux) tool; it reads what --ndjson prints here";
}
constexpr RowFormKind::Make* makeDatabase = nullptr;
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

std::unique_ptr<RowForm> makeJson(const FieldList& fields, const std::string&) {
    const auto writer = std::make_shared<RowJsonWriter>(fields);
    return std::make_unique<TextForm>([writer](const StationRow& row) { return writer->line(row); });
}

std::unique_ptr<RowForm> makeCsv(const FieldList& fields, const std::string&) {
    return std::make_unique<TextForm>([fields](const StationRow& row) { return csvLine(row, fields); },
                                      csvHeader(fields));
}

constexpr RowFormKind kForms[] = {
    {"--ndjson", "Print a JSON object a line for each record", makeJson},
    {"--csv", "Print a table as comma-separated values, with a header", makeCsv},
    {"--sqlite",
     "Write the records into the table \"stations\" of the SQLite file FILE, in the place of those of the same names "
     "(native tool)",
     makeDatabase, checkDatabase},
};

CLI::Option* addForm(CLI::App& command, const RowFormKind& form, RowOptions& options) {
    if (form.checkFile == nullptr)
        return command.add_flag_callback(
            form.option, [&options, &form] { options.form = &form; }, form.help);
    const auto choose = [&options, &form](const std::string& file) { options = {&form, file}; };
    return command.add_option_function<std::string>(form.option, choose, form.help)
        ->type_name("FILE")
        ->check(form.checkFile)
        ->excludes(command.get_option("--field"));
}

}  // namespace

void refuseWishesOfOne(const ResultOptions& result) {
    if (result.json)
        throw WrongUse("--json prints one record; --ndjson prints one a line");
    for (const auto& [option, file] : {std::pair{"--html", &result.html}, std::pair{"--raw", &result.raw}})
        if (!file->empty())
            throw WrongUse(std::string(option) + " writes one record");
}

std::vector<CLI::Option*> addRowOptions(CLI::App& command, RowOptions& options) {
    std::vector<CLI::Option*> added;
    for (const RowFormKind& form : kForms) {
        CLI::Option* option = addForm(command, form, options);
        for (const char* other : {"--all", "--json"})
            option->excludes(command.get_option(other));
        for (CLI::Option* other : added)
            option->excludes(other);
        added.push_back(option);
    }
    return added;
}

void addSetOptions(CLI::App& command, SetOptions& options) {
    addPlaces(command, options.places);
    addJobs(command, options.jobs);
    addRowOptions(command, options.rows);
}

std::unique_ptr<RowForm> rowForm(const RowOptions& rows, const ResultOptions& result) {
    refuseWishesOfOne(result);
    const FieldList asked = askedFields(result);
    if (!rows.isEmpty())
        return rows.form->make(asked.empty() ? allFields() : asked, rows.file);
    if (!asked.empty())
        return std::make_unique<TableForm>(asked);
    return makeViews(result.text);
}

void giveOutRow(const StationRow& row, const RowOptions& rows, const ResultOptions& result) {
    const std::unique_ptr<RowForm> form = rowForm(rows, result);
    form->begin();
    form->take(form->encode(row));
    form->finish();
}

int giveOutRows(const SetOptions& set, const ResultOptions& result, SourceKind kind, const std::string& what,
                const std::function<StationRow(const Source&)>& rowOf) {
    const std::unique_ptr<RowForm> form = rowForm(set.rows, result);
    const Perform perform = [&](const Source& source) { return form->encode(rowOf(source)); };
    if (isPart())
        return servePart(perform);
    std::vector<Source> sources = sourcesOf(set.places, kind);
    const bool isPrinted = set.rows.file.empty();
    if (!isPrinted)
        refuseDoubles(sources);
    form->begin();
    const Tally tally = performAll(sources,
                                   {.what = what,
                                    .perform = perform,
                                    .take = [&](const Source&, std::string_view row) { form->take(row); },
                                    .prints = isPrinted},
                                   set.jobs);
    form->finish();
    return statusOf(tally);
}

}  // namespace kvstation
