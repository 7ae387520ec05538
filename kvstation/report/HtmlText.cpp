#include "kvstation/report/HtmlText.h"

#include "kvstation/text/VisibleText.h"

namespace kvstation {

std::string escapeHtml(std::string_view utf8) {
    std::string html;
    for (const char c : visible(utf8)) {
        switch (c) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            case '\'':
                html += "&#39;";
                break;
            default:
                html += c;
        }
    }
    return html;
}

}  // namespace kvstation
