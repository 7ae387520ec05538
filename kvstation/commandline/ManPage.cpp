#include "kvstation/commandline/ManPage.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "kvstation/commandline/ShellText.h"
#include "kvstation/record/FieldTable.h"

namespace kvstation {
namespace {

// Plain text: hyphens are those that people copy, and no line is a request.
std::string manText(std::string text) {
    text = withEach(std::move(text), "\\", "\\e");
    text = withEach(std::move(text), "-", "\\-");
    text = withEach(std::move(text), "~", "\\(ti");
    text = withEach(std::move(text), "^", "\\(ha");
    text = withEach(std::move(text), "`", "\\(ga");
    if (text.starts_with('.') || text.starts_with('\''))
        text.insert(0, "\\&");
    return text;
}

std::string inBold(const std::string& text) {
    return "\\fB" + manText(text) + "\\fR";
}

std::string inItalics(const std::string& text) {
    return "\\fI" + manText(text) + "\\fR";
}

std::string section(std::string title) {
    std::ranges::transform(title, title.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return ".SH " + manText(title) + "\n";
}

std::string paragraph(const std::string& text) {
    return manText(text) + (text.ends_with('.') ? "" : ".") + "\n";
}

// Lines that stay as they are.
std::string verbatim(const std::vector<std::string>& lines) {
    std::string text = ".PP\n.nf\n.RS 4\n";
    for (const std::string& line : lines)
        text += manText(line) + "\n";
    return text + ".RE\n.fi\n";
}

std::string optionTag(const OptionLine& option) {
    std::string tag = option.shortName.empty() ? "" : inBold("-" + option.shortName) + ", ";
    tag += inBold("--" + option.longName);
    return option.argument ? tag + " " + inItalics(option.argument->placeholder) : tag;
}

std::string optionEntry(const OptionLine& option) {
    return ".TP\n" + optionTag(option) + "\n" + paragraph(option.description);
}

std::string placeName(const PlaceLine& place) {
    const std::string name = inItalics(place.argument.placeholder) + (place.repeats ? " ..." : "");
    return place.required ? name : "[" + name + "]";
}

std::string verbSynopsis(const VerbLine& verb) {
    std::string text = inBold(verb.name);
    for (const PlaceLine& place : verb.places)
        text += " " + placeName(place);
    return text + (verb.options.empty() ? "" : " [" + inItalics("OPTION") + " ...]");
}

// What stands below --help: "Title: text" or "Title:" and indented lines, with an empty line between two of them.
struct FooterPart {
    std::string title;
    std::string text;
    std::vector<std::string> lines;
};

std::vector<FooterPart> footerParts(const std::string& footer) {
    std::vector<FooterPart> parts;
    std::istringstream all(footer);
    for (std::string line; std::getline(all, line);) {
        const std::size_t colon = line.find(':');
        const std::size_t begin = line.find_first_not_of(' ');
        if (begin == std::string::npos)
            continue;
        if (begin == 0 && colon != std::string::npos)
            parts.push_back({line.substr(0, colon), line.substr(std::min(line.size(), colon + 2)), {}});
        else if (!parts.empty())
            parts.back().lines.push_back(line.substr(begin));
    }
    return parts;
}

std::string footerText(const FooterPart& part) {
    return (part.text.empty() ? "" : paragraph(part.text)) + (part.lines.empty() ? "" : verbatim(part.lines));
}

std::string verbEntry(const VerbLine& verb) {
    std::string text = ".SS " + verbSynopsis(verb) + "\n" + paragraph(verb.description);
    for (const PlaceLine& place : verb.places)
        text += ".TP\n" + inItalics(place.argument.placeholder) + "\n" + paragraph(place.description);
    for (const OptionLine& option : verb.options)
        if (option.longName != "help")
            text += optionEntry(option);
    for (const FooterPart& part : footerParts(verb.footer))
        text += footerText(part);
    return text;
}

// The first word small and no point: "kvstation - sees, explains ...".
std::string nameLine(const CommandLine& line) {
    std::string text = line.description;
    text.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(text.front())));
    if (text.ends_with('.'))
        text.pop_back();
    return line.name + " \\- " + manText(text) + "\n";
}

std::string fieldEntries() {
    std::string text;
    for (const Field& field : fields())
        text += ".TP\n" + inBold(std::string(field.name)) + "\n" + paragraph(std::string(field.meaning));
    return text;
}

}  // namespace

std::string manPage(const CommandLine& line) {
    std::string text = ".\\\" Made by 'kvstation man'.\n.TH KVSTATION 1 \"\" \"" + manText(line.version) +
                       "\" \"User Commands\"\n" + section("Name") + nameLine(line) + section("Synopsis") +
                       inBold(line.name) + " " + inItalics("VERB") + " [" + inItalics("ARGUMENT") + " ...]\n" +
                       section("Description") + paragraph(line.description) + section("Options");
    for (const OptionLine& option : line.options)
        text += optionEntry(option);
    text += section("Verbs");
    for (const VerbLine& verb : line.verbs)
        text += verbEntry(verb);
    text += section("Fields") + fieldEntries();
    for (const FooterPart& part : footerParts(line.footer))
        text += section(part.title) + footerText(part);
    return text;
}

}  // namespace kvstation
