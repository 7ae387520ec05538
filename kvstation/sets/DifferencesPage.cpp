// The differences of two sets as a page.
#include <nlohmann/json.hpp>

#include "kvstation/report/HtmlPage.h"
#include "kvstation/report/HtmlText.h"
#include "kvstation/sets/SetDifferences.h"

namespace kvstation {
namespace {

// A value in JSON as people read it.
std::string shown(const std::string& json) {
    const nlohmann::ordered_json value = nlohmann::ordered_json::parse(json);
    if (value.is_number())
        return value.dump();
    const auto& text = value.is_object() ? value["text"] : value;
    return text.get<std::string>();
}

std::string card(const std::string& what, std::size_t count) {
    return "<div><dt>" + what + "</dt><dd class=\"main\">" + std::to_string(count) + "</dd></div>\n";
}

std::string namesSection(const std::string& what, const std::vector<std::string>& names) {
    std::string items;
    for (const std::string& name : names)
        items += "<li>" + escapeHtml(name) + "</li>\n";
    return names.empty() ? "" : "<section><h2>" + what + "</h2>\n<ul class=\"names\">\n" + items + "</ul></section>\n";
}

std::string fieldSection(const Field& field, const std::vector<FieldChange>& changes) {
    std::string rows;
    for (const FieldChange& change : changes)
        rows += "<tr><th scope=\"row\">" + escapeHtml(change.name) + "</th><td>" + escapeHtml(shown(change.left)) +
                "</td><td>" + escapeHtml(shown(change.right)) + "</td></tr>\n";
    return "<section><h2>" + escapeHtml(field.name) + "<small>" + escapeHtml(field.meaning) + "; " +
           std::to_string(changes.size()) + (changes.size() == 1 ? " station" : " stations") +
           "</small></h2>\n<table class=\"changes\">\n"
           "<thead><tr><th scope=\"col\">Station</th><th scope=\"col\">Before</th><th scope=\"col\">After</th></tr>"
           "</thead>\n<tbody>\n" +
           rows + "</tbody></table></section>\n";
}

}  // namespace

std::string differencesPage(const SetDifferences& differences) {
    std::string body = "<header><h1>What differs</h1><p>Before: " + escapeHtml(lastPart(differences.left)) +
                       "<br>After: " + escapeHtml(lastPart(differences.right)) +
                       "</p></header>\n<dl class=\"glance\">\n" + card("On both sides", differences.compared) +
                       card("Differ", differences.differing) + card("Went", differences.went.size()) +
                       card("Came", differences.came.size()) + "</dl>\n" + namesSection("Went", differences.went) +
                       namesSection("Came", differences.came);
    for (std::size_t i = 0; i < fields().size(); ++i)
        if (!differences.fields[i].empty())
            body += fieldSection(fields()[i], differences.fields[i]);
    return page("What differs - station records", body, "Page");
}

}  // namespace kvstation
