#include "kvstation/HtmlView.h"

#include <algorithm>
#include <cstdio>

#include "kvstation/FixedDrives.h"
#include "kvstation/HtmlMap.h"
#include "kvstation/HtmlStyle.h"
#include "kvstation/HtmlText.h"
#include "kvstation/VisibleText.h"
#include "kvstation/cause/CauseText.h"

namespace kvstation {
namespace {

std::string textAt(const Record& record, std::string_view field) {
    return record.at(field).text;
}

std::string stationName(const Record& record) {
    for (const char* field : {"szStation", "szClientName", "szDnsName"})
        if (!textAt(record, field).empty())
            return textAt(record, field);
    return "Unnamed station";
}

std::string head(const std::string& name) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\">\n"
           "<title>" +
           escapeHtml(name) + " - station record</title>\n<style>" + kPageStyle + "</style>\n</head>\n<body>\n";
}

// A long name breaks behind its parts.
std::string heading(std::string_view name) {
    std::string html;
    for (std::size_t end; (end = name.find_first_of(".\\@")) != std::string_view::npos; name.remove_prefix(end + 1))
        html += escapeHtml(name.substr(0, end + 1)) + "<wbr>";
    return "<h1>" + html + escapeHtml(name) + "</h1>\n";
}

// A card's first text that is not empty stands large, the others below it.
std::string card(const char* label, std::initializer_list<std::string> texts) {
    std::string html;
    for (const std::string& text : texts)
        if (!text.empty())
            html += (html.empty() ? "<dd class=\"main\">" : "<dd>") + escapeHtml(text) + "</dd>";
    return std::string("<div><dt>") + label + "</dt>" + (html.empty() ? "<dd class=\"main\">unknown</dd>" : html) +
           "</div>\n";
}

// "005056AB12CD" as "00-50-56-AB-12-CD"; what is no such address stays.
std::string readableMac(const std::string& mac) {
    const bool isHex = mac.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
    if (mac.size() != 12 || !isHex)
        return mac;
    std::string readable;
    for (std::size_t i = 0; i < mac.size(); i += 2)
        readable += (i == 0 ? "" : "-") + mac.substr(i, 2);
    return readable;
}

// Whether nobody knows if somebody sat at the machine itself: that is told by this variable and the session.
bool isSessionUnknown(const Report& report) {
    return std::ranges::any_of(report.unknown, [](const std::string& one) {
        return one == "environment.CLIENTNAME" || one.starts_with("session");
    });
}

std::string kindOfSession(const Report& report) {
    const Record& record = report.record;
    if (record.at("dwMetaFrame").number != 0)
        return "MetaFrame client";
    if (record.at("dwTSClientSession").number != 0)
        return "Terminal Services client";
    if (record.at("dwWinFrame").number != 0)
        return "WinFrame client";
    return isSessionUnknown(report) ? "unknown" : "At the station itself";
}

std::string labelled(const char* label, const std::string& text) {
    return text.empty() ? "" : label + text;
}

std::string numberOfSession(const Report& report) {
    return isSessionUnknown(report) ? "" : "session " + std::to_string(report.record.at("dwSessionId").number);
}

std::string glance(const Report& report) {
    const Record& record = report.record;
    return "<dl class=\"glance\">\n" +
           card("User", {textAt(record, "szUserDisplayedName"), textAt(record, "szUserName"),
                         labelled("Windows account ", textAt(record, "szWinUser"))}) +
           card("Address", {textAt(record, "szIPAddress"), readableMac(textAt(record, "szMACAddress")),
                            textAt(record, "szDnsName")}) +
           card("Windows", {report.product, textAt(record, "szOS")}) +
           card("Session",
                {kindOfSession(report), numberOfSession(report), labelled("client ", textAt(record, "szTSClientName")),
                 labelled("server ", textAt(record, "szServerName"))}) +
           "</dl>\n";
}

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
    for (const FixedDrive& drive : parseFixedDrives(textAt(record, "szFixedDrives")).drives)
        html += driveBar(drive);
    return html.empty() ? "" : "<ul class=\"drives\">\n" + html + "</ul>\n";
}

// Lists have an item in each line.
std::string shownValue(const std::string& text) {
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
    return "<details><summary>" + summary + "</summary><ul>" +
           (items.empty() ? "<li>nothing that was asked changes it</li>" : items) + "</ul></details>";
}

std::string fieldRow(const Report& report, std::size_t index) {
    const Record& record = report.record;
    const Field& field = fields()[index];
    const std::string name(field.name);
    return "<div id=\"" + name + "\"><dt><code>" + name + "</code><small>" + escapeHtml(field.meaning) +
           "</small></dt><dd><span class=\"value\">" + shownValue(record.textOf(index)) + "</span><small>" +
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
    for (std::size_t i = 0; i < fields().size(); ++i) {
        if (fields()[i].group != group)
            continue;
        if (record.isEmpty(i))
            empty += (empty.empty() || !report.causes.empty() ? "" : ", ") + emptyField(report, i);
        else
            found += fieldRow(report, i);
    }
    return "<section class=\"" + groupClass(group) + "\"><h2><i></i>" + std::string(group) + "</h2>\n" +
           (group == "Drives" ? driveBars(record) : "") +
           (found.empty() ? "" : "<dl class=\"fields\">\n" + found + "</dl>\n") +
           emptyFields(empty, !report.causes.empty()) + "</section>\n";
}

std::string unknownNotice(const Report& report) {
    if (report.unknown.empty())
        return {};
    std::string html;
    for (const std::string& one : report.unknown)
        html += (html.empty() ? "" : ", ") + escapeHtml(one);
    return "<details class=\"unknown\"><summary>What nobody knows of this machine stands here as if it were not "
           "there</summary><p>" +
           html + "</p></details>\n";
}

std::string legend() {
    std::string html = "<ul class=\"legend\">";
    for (const std::string_view group : groups())
        html += "<li><i class=\"" + groupClass(group) + "\"></i>" + std::string(group) + "</li>";
    return html + "</ul>\n";
}

std::string foot(const std::string& origin) {
    return "<footer>Record of " + escapeHtml(origin) +
           ", made with kvstation " KVSTATION_VERSION "</footer>\n</body>\n</html>\n";
}

}  // namespace

std::string htmlView(const Report& report) {
    const std::string name = stationName(report.record);
    const std::string& product = report.product;
    std::string html = head(name) + heading(name) + "<p>" + (product.empty() ? "" : escapeHtml(product) + ", ") +
                       "workstation record</p>\n" + unknownNotice(report) + glance(report);
    for (const std::string_view group : groups())
        html += groupSection(report, group);
    html += "<section><h2>The record's bytes</h2>\n" + legend() + mapOfBytes(report.record) + "</section>\n";
    return html + foot(report.origin);
}

}  // namespace kvstation
