#include "kvstation/report/HtmlView.h"

#include <cstdio>

#include "kvstation/cause/CauseText.h"
#include "kvstation/record/FixedDrives.h"
#include "kvstation/report/HtmlMap.h"
#include "kvstation/report/HtmlPage.h"
#include "kvstation/report/HtmlStyle.h"
#include "kvstation/report/HtmlText.h"
#include "kvstation/report/HtmlTop.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

std::string readableSize(std::int64_t megabytes) {
    char text[64];
    if (megabytes < 1024)
        std::snprintf(text, sizeof text, "%lld MB", static_cast<long long>(megabytes));
    else
        std::snprintf(text, sizeof text, "%.1f GB", static_cast<double>(megabytes) / 1024);
    return text;
}

std::string driveBar(const FixedDrive& drive) {
    std::string html = std::string("<li><p><strong>") + drive.letter + ": " + escapeHtml(drive.label) +
                       "</strong><span>" + escapeHtml(drive.fileSystem);
    if (!drive.hasSize())
        return html + (drive.fileSystem.empty() ? "" : ", ") + "size unknown</span></p></li>\n";
    const std::string used = std::to_string(100 - drive.percentFree);
    return html + " " + readableSize(drive.totalMB) + ", " + std::to_string(drive.percentFree) +
           "% free</span></p><div class=\"bar\" role=\"img\" aria-label=\"" + used +
           "% used\"><b style=\"width:" + used + "%\"></b></div></li>\n";
}

std::string driveBars(const Record& record) {
    std::string html;
    for (const FixedDrive& drive : parseFixedDrives(record.at("szFixedDrives").text).drives)
        html += driveBar(drive);
    return html.empty() ? "" : "<ul class=\"drives\">\n" + html + "</ul>\n";
}

// Lists have an item in each line.
std::string shownValue(const Field& field, const std::string& text) {
    if (!field.isList)
        return escapeHtml(text);
    std::string html;
    std::size_t begin = 0;
    for (std::size_t end = text.find(';'); end != std::string::npos; end = text.find(';', begin)) {
        html += escapeHtml(text.substr(begin, end + 1 - begin)) + "\n";
        begin = end + 1;
    }
    return html + escapeHtml(text.substr(begin));
}

std::string causeItems(const std::vector<Cause>& causes) {
    std::string html;
    for (const CauseLine& line : causeLines(causes))
        html += "<li><b>" + line.role + "</b> " + escapeHtml(line.answer) + " <small>" + escapeHtml(line.source) +
                "</small></li>";
    return html;
}

// What gives the field and what decides it, behind a word that opens it.
std::string causesOfField(const Report& report, std::size_t index, const std::string& summary) {
    if (report.causes.empty())
        return summary;
    const FieldCauses& causes = report.causes[index];
    std::string items = causeItems(causes.causes);
    if (causes.cut)
        items = "<li><b>cut</b> from " + lengthOf(*causes.cut) + " characters: " + escapeHtml(causes.cut->text) +
                "</li>" + items;
    for (const std::string& one : causes.unknown)
        items += "<li><b>unknown</b> <small>" + escapeHtml(one) + "</small></li>";
    return "<details><summary>" + summary + "</summary><ul>" +
           (items.empty() ? "<li>" + withoutCauses(causes) + "</li>" : items) + "</ul></details>";
}

std::string fieldRow(const Report& report, std::size_t index) {
    const Record& record = report.record;
    const Field& field = fields()[index];
    const std::string name(field.name);
    return "<div id=\"" + name + "\"><dt><code>" + name + "</code><small>" + escapeHtml(field.meaning) +
           "</small></dt><dd><span class=\"value\">" + shownValue(field, record.textOf(index)) + "</span><small>" +
           placeOf(field, record[index]) + "</small>" +
           (report.causes.empty() ? "" : causesOfField(report, index, "why")) + "</dd></div>\n";
}

std::string emptyField(const Report& report, std::size_t index) {
    const Field& field = fields()[index];
    const std::string name(field.name);
    return causesOfField(report, index,
                         "<code id=\"" + name + "\" title=\"" + escapeHtml(field.meaning) + "\">" + name + "</code>");
}

std::string emptyFields(const std::string& html, bool haveCauses) {
    if (html.empty())
        return {};
    return haveCauses ? "<div class=\"nothing\">Empty or 0: " + html + "</div>\n"
                      : "<p class=\"nothing\">Empty or 0: " + html + "</p>\n";
}

std::string groupSection(const Report& report, std::string_view group) {
    const Record& record = report.record;
    std::string found;
    std::string empty;
    FilledFields count;
    for (std::size_t i = 0; i < fields().size(); ++i) {
        if (fields()[i].group != group)
            continue;
        count.add(record, i);
        if (record.isEmpty(i))
            empty += (empty.empty() || !report.causes.empty() ? "" : ", ") + emptyField(report, i);
        else
            found += fieldRow(report, i);
    }
    return "<section class=\"" + groupClass(group) + "\"><h2><i></i>" + std::string(group) + "<small>" + count.text() +
           "</small></h2>\n" + (group == "Drives" ? driveBars(record) : "") +
           (found.empty() ? "" : "<dl class=\"fields\">\n" + found + "</dl>\n") +
           emptyFields(empty, !report.causes.empty()) + "</section>\n";
}

std::string unknownNotice(const Report& report) {
    if (report.unknown.empty())
        return {};
    return "<details class=\"unknown\"><summary>What nobody knows of this machine stands here as if it were not "
           "there</summary><p>" +
           joinWords(report.unknown, ", ", escapeHtml) + "</p></details>\n";
}

std::string legend() {
    std::string html = "<ul class=\"legend\">";
    for (const Group& group : groups())
        html += "<li><i class=\"" + groupClass(group.name) + "\"></i>" + std::string(group.name) + "</li>";
    return html + "</ul>\n";
}

std::string foot(const std::string& origin) {
    const std::string name = lastPart(origin);
    return name.empty() ? "Page" : "Record of " + name + ", page";
}

}  // namespace

std::string htmlView(const Report& report) {
    std::string html = topOfPage(report) + unknownNotice(report) + glance(report);
    for (const Group& group : groups())
        html += groupSection(report, group.name);
    html += "<section><h2>The record's bytes</h2>\n" + legend() + mapOfBytes(report.record) + "</section>\n";
    return page(stationName(report.record) + " - station record", html, foot(report.origin));
}

}  // namespace kvstation
