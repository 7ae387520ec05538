#include "kvstation/ResultOptions.h"

#include <CLI/App.hpp>

#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/HtmlView.h"
#include "kvstation/JsonView.h"
#include "kvstation/Output.h"
#include "kvstation/Similar.h"
#include "kvstation/TextView.h"
#include "kvstation/VisibleText.h"

namespace kvstation {
namespace {

std::string checkFieldName(const std::string& name) {
    if (findField(name) != fields().size())
        return {};
    return "'" + name + "' is no field" + describeSimilar(similarFields(name));
}

std::string fieldView(const Record& record, std::string_view name, const Terminal& terminal) {
    const std::string text = record.textOf(findField(name));
    return (terminal.isTerminal ? visible(text) : text) + "\n";
}

std::string view(const Report& report, const ResultOptions& options) {
    const Terminal terminal = standardOutput();
    if (options.json)
        return jsonView(report);
    if (!options.field.empty())
        return fieldView(report.record, options.field, terminal);
    return textView(report, {.all = options.all, .colours = terminal.hasColours, .width = terminal.width});
}

void writeRaw(const Report& report, const std::string& path) {
    if (!report.bytes)
        throw Failure(path + " is not written: a record that was read from JSON has no raw bytes");
    writeFile(path, {report.bytes->data(), report.bytes->size()});
}

}  // namespace

void addResultOptions(CLI::App& command, ResultOptions& options) {
    CLI::Option* json = command.add_flag("--json", options.json, "Print one JSON object with the record's field names");
    CLI::Option* field = command.add_option("--field", options.field, "Print the value of one field, for scripts");
    field->type_name("NAME")->excludes(json)->check(checkFieldName);
    CLI::Option* all = command.add_flag("--all", options.all, "Print the empty fields too");
    all->excludes(json)->excludes(field);
    command.add_option("--html", options.html, "Write a page to FILE")->type_name("FILE")->check(checkFileName);
    command.add_option("--raw", options.raw, "Write the record's bytes to FILE")
        ->type_name("FILE")
        ->check(checkFileName);
}

void giveOut(const Report& report, const ResultOptions& options) {
    const bool writesFiles = !options.html.empty() || !options.raw.empty();
    if (!options.html.empty())
        writeFile(options.html, htmlView(report));
    if (!options.raw.empty())
        writeRaw(report, options.raw);
    if (options.json || options.all || !options.field.empty() || !writesFiles)
        writeResult(view(report, options));
}

}  // namespace kvstation
