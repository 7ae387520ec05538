#include "kvstation/report/HtmlTop.h"

#include <algorithm>
#include <initializer_list>

#include "kvstation/report/HtmlText.h"
#include "simwin/text/HexText.h"

namespace kvstation {
namespace {

std::string textAt(const Record& record, std::string_view field) {
    return record.at(field).text;
}

// A long name breaks behind its parts.
std::string heading(std::string_view name) {
    std::string html;
    for (std::size_t end; (end = name.find_first_of(".\\@")) != std::string_view::npos; name.remove_prefix(end + 1))
        html += escapeHtml(name.substr(0, end + 1)) + "<wbr>";
    return "<h1>" + html + escapeHtml(name) + "</h1>\n";
}

std::string filledFields(const Record& record) {
    FilledFields count;
    for (std::size_t i = 0; i < fields().size(); ++i)
        count.add(record, i);
    return count.text();
}

// "2026-11-22T12:00:00Z" as people read it.
std::string readableTime(const std::string& at) {
    std::string text = at.substr(0, at.find('Z'));
    std::ranges::replace(text, 'T', ' ');
    return "<time datetime=\"" + escapeHtml(at) + "\">" + escapeHtml(text) + " UTC</time>";
}

std::string whenAndByWhat(const std::optional<simwin::Collected>& collected) {
    if (!collected)
        return "When and by which version it was collected is not known";
    std::string programs;
    if (!collected->library.empty())
        programs += " by kvcstat64.dll " + escapeHtml(collected->library);
    if (!collected->tool.empty())
        programs += (programs.empty() ? " by" : " and") + std::string(" kvstation ") + escapeHtml(collected->tool);
    return "Collected " + (collected->at.empty() ? "at an unknown time" : readableTime(collected->at)) + programs;
}

struct Fact {
    const char* name;
    std::string text;
};

// The first fact that is known stands large, below its name; the others follow with theirs.
std::string card(std::initializer_list<Fact> facts) {
    const auto isKnown = [](const Fact& fact) { return !fact.text.empty(); };
    const Fact* const main = std::ranges::find_if(facts, isKnown);
    if (main == facts.end())
        return std::string("<div><dt>") + facts.begin()->name + "</dt><dd class=\"main\">unknown</dd></div>\n";
    std::string html =
        std::string("<div><dt>") + main->name + "</dt><dd class=\"main\">" + escapeHtml(main->text) + "</dd>";
    for (const Fact* fact = main + 1; fact != facts.end(); ++fact)
        if (isKnown(*fact))
            html += std::string("<dd><span>") + fact->name + "</span> " + escapeHtml(fact->text) + "</dd>";
    return html + "</div>\n";
}

// "005056AB12CD" as "00-50-56-AB-12-CD"; what is no such address stays.
std::string readableMac(const std::string& mac) {
    const bool isHex = std::ranges::all_of(mac, simwin::isHexDigit);
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

std::string numberOfSession(const Report& report) {
    return isSessionUnknown(report) ? "" : std::to_string(report.record.at("dwSessionId").number);
}

}  // namespace

std::string stationName(const Record& record) {
    for (const char* field : {"szStation", "szClientName", "szDnsName"})
        if (!textAt(record, field).empty())
            return textAt(record, field);
    return "Unnamed station";
}

std::string topOfPage(const Report& report) {
    const std::string product = report.product.empty() ? "" : escapeHtml(report.product) + ", ";
    return "<header>" + heading(stationName(report.record)) + "<p>" + product + "workstation record, " +
           filledFields(report.record) + " filled</p>\n" +
           (report.description.empty() ? "" : "<p>" + escapeHtml(report.description) + "</p>\n") + "<p>" +
           whenAndByWhat(report.collected) + "</p></header>\n";
}

std::string glance(const Report& report) {
    const Record& record = report.record;
    return "<dl class=\"glance\">\n" +
           card({{"User's display name", textAt(record, "szUserDisplayedName")},
                 {"User name", textAt(record, "szUserName")},
                 {"Windows account", textAt(record, "szWinUser")}}) +
           card({{"IP address", textAt(record, "szIPAddress")},
                 {"MAC address", readableMac(textAt(record, "szMACAddress"))},
                 {"DNS name", textAt(record, "szDnsName")}}) +
           card({{"Windows", report.product}, {"Operating system", textAt(record, "szOS")}}) +
           card({{"Session", kindOfSession(report)},
                 {"Number", numberOfSession(report)},
                 {"Client", textAt(record, "szTSClientName")},
                 {"Server", textAt(record, "szServerName")}}) +
           "</dl>\n";
}

}  // namespace kvstation
