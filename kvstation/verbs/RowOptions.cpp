#include "kvstation/verbs/RowOptions.h"

#include <CLI/App.hpp>

#include "kvstation/forms/RowForm.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/PartProcess.h"

namespace kvstation {
namespace {

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

std::unique_ptr<RowForm> formOf(const RowOptions& rows, const ResultOptions& result) {
    const FieldList asked = askedFields(result);
    if (!rows.isEmpty())
        return rows.form->make(asked.empty() ? allFields() : asked, rows.file);
    if (!asked.empty())
        return makeTable(asked);
    return makeViews(result.text);
}

std::vector<CLI::Option*> addForms(CLI::App& command, RowOptions& options, bool intoFilesToo) {
    std::vector<CLI::Option*> added;
    for (const RowFormKind* form : kRowForms) {
        if (form->checkFile != nullptr && !intoFilesToo)
            continue;
        CLI::Option* option = addForm(command, *form, options);
        for (const char* other : {"--all", "--json"})
            option->excludes(command.get_option(other));
        for (CLI::Option* other : added)
            option->excludes(other);
        added.push_back(option);
    }
    return added;
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
    return addForms(command, options, false);
}

void addSetOptions(CLI::App& command, SetOptions& options) {
    addPlaces(command, options.places);
    addJobs(command, options.jobs);
    addForms(command, options.rows, true);
}

void giveOutRow(const StationRow& row, const RowOptions& rows, const ResultOptions& result) {
    const std::unique_ptr<RowForm> form = formOf(rows, result);
    form->begin();
    form->take(form->encode(row));
    form->finish();
}

int giveOutRows(const SetOptions& set, const ResultOptions& result, SourceKind kind, const std::string& what,
                const std::function<StationRow(const Source&)>& rowOf) {
    refuseWishesOfOne(result);
    const std::unique_ptr<RowForm> form = formOf(set.rows, result);
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
