#include "kvstation/verbs/ResultOptions.h"

#include <CLI/App.hpp>
#include <algorithm>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/platform/Output.h"
#include "kvstation/report/HtmlView.h"
#include "kvstation/report/JsonView.h"
#include "kvstation/text/Similar.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

// A line for each field.
std::string fieldView(const Record& record, const std::vector<std::size_t>& asked, const Terminal& terminal) {
    std::string lines;
    for (const std::size_t field : asked) {
        const std::string text = record.textOf(field);
        lines += (terminal.isTerminal ? visible(text) : text) + "\n";
    }
    return lines;
}

std::string view(const Report& report, const ResultOptions& options) {
    const Terminal terminal = standardOutput();
    if (options.json)
        return jsonView(report);
    if (!options.fields.empty())
        return fieldView(report.record, askedFields(options), terminal);
    TextOptions text = options.text;
    text.colours = terminal.hasColours;
    text.width = terminal.width;
    return textView(report, text);
}

std::string rawBytes(const Report& report, const std::string& path) {
    if (!report.bytes)
        throw Failure(path + " is not written: a record that was read from JSON has no raw bytes");
    return {report.bytes->data(), report.bytes->size()};
}

// What goes where; a file named "-" is standard output.
std::vector<NewFile> results(const Report& report, const ResultOptions& options) {
    std::vector<NewFile> files;
    if (!options.html.empty())
        files.push_back({options.html, htmlView(report)});
    if (!options.raw.empty())
        files.push_back({options.raw, rawBytes(report, options.raw)});
    if (options.json || options.text != TextOptions() || !options.fields.empty() || files.empty())
        files.push_back({kStandardOutputName, view(report, options)});
    return files;
}

}  // namespace

std::string checkFieldName(const std::string& name) {
    if (findTypedField(name) != fields().size())
        return {};
    return "'" + name + "' is no field" + describeSimilar(similarFields(name));
}

void addResultOptions(CLI::App& command, ResultOptions& options) {
    CLI::Option* json = command.add_flag("--json", options.json, "Print one JSON object with the record's field names");
    CLI::Option* field =
        command.add_option("--field", options.fields, "Print the value of this field, for scripts; may be repeated");
    field->type_name("FIELD")->allow_extra_args(false)->excludes(json)->check(checkFieldName);
    CLI::Option* all = command.add_flag("--all", options.text.all, "Print the empty fields too");
    all->excludes(json)->excludes(field);
    command.add_option("--html", options.html, "Write a page to FILE, - for standard output")
        ->type_name("FILE")
        ->check(checkFileName);
    command.add_option("--raw", options.raw, "Write the record's bytes to FILE, - for standard output")
        ->type_name("FILE")
        ->check(checkFileName);
}

std::vector<std::size_t> askedFields(const ResultOptions& options) {
    std::vector<std::size_t> asked;
    for (const std::string& name : options.fields)
        if (const std::size_t field = findTypedField(name); std::ranges::find(asked, field) == asked.end())
            asked.push_back(field);
    return asked;
}

void giveOut(const Report& report, const ResultOptions& options) {
    writeResults(results(report, options));
}

void writeResults(std::vector<NewFile> results) {
    for (std::size_t i = 1; i < results.size(); ++i)
        if (std::ranges::count(results, results[i].path, &NewFile::path) > 1)
            throw WrongUse((results[i].path == kStandardOutputName ? "standard output" : results[i].path) +
                           " takes one result; name another file for the other");
    const auto printed = std::ranges::find(results, kStandardOutputName, &NewFile::path);
    const std::string text = printed == results.end() ? std::string() : std::move(printed->bytes);
    if (printed != results.end())
        results.erase(printed);
    writeFiles(results);
    writeResult(text);
}

}  // namespace kvstation
