#include "kvstation/report/HtmlPage.h"

#include "kvstation/report/HtmlStyle.h"
#include "kvstation/report/HtmlText.h"

namespace kvstation {

std::string lastPart(std::string_view path) {
    path = path.substr(0, path.find_last_not_of("/\\") + 1);
    const std::string_view part = path.substr(path.find_last_of("/\\") + 1);
    return part == "." || part == ".." ? std::string() : std::string(part);
}

std::string page(const std::string& title, const std::string& body, const std::string& foot) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\">\n"
           "<title>" +
           escapeHtml(title) + "</title>\n<style>" + pageStyle() + "</style>\n</head>\n<body>\n" + body + "<footer>" +
           escapeHtml(foot) + " made by kvstation " KVSTATION_VERSION "</footer>\n</body>\n</html>\n";
}

}  // namespace kvstation
