#include "kvstation/report/HtmlMap.h"

#include <algorithm>
#include <cstdio>

#include "kvstation/record/FieldTable.h"
#include "kvstation/report/HtmlStyle.h"
#include "kvstation/report/HtmlText.h"

namespace kvstation {
namespace {

// One unit of the picture is the width of a byte.
constexpr std::size_t kBytesInRow = 128;
constexpr std::size_t kMargin = 9;  // for the offset at the left of a row
constexpr double kRowHeight = 2.6;
constexpr double kBarHeight = 2.2;
constexpr double kBaseline = 1.5;
constexpr double kLetterWidth = 0.82;

constexpr std::size_t rowCount() {
    return (KVCSTAT_RECORD_SIZE + kBytesInRow - 1) / kBytesInRow;
}

constexpr std::size_t kWidth = kMargin + kBytesInRow;
constexpr double kHeight = static_cast<double>(rowCount()) * kRowHeight;

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

double top(std::size_t row) {
    return static_cast<double>(row) * kRowHeight;
}

// Calls `draw(row, first column, count)` for each row that the bytes touch.
template <class Draw>
void forEachRow(std::size_t offset, std::size_t count, Draw draw) {
    for (const std::size_t end = offset + count; offset < end;) {
        const std::size_t column = offset % kBytesInRow;
        const std::size_t inRow = std::min(end - offset, kBytesInRow - column);
        draw(offset / kBytesInRow, column, inRow);
        offset += inRow;
    }
}

void drawBytes(std::string& svg, const char* kind, std::size_t offset, std::size_t count) {
    forEachRow(offset, count, [&](std::size_t row, std::size_t column, std::size_t inRow) {
        svg += std::string("<rect class=\"") + kind + "\" x=\"" + std::to_string(kMargin + column) + "\" y=\"" +
               number(top(row)) + "\" width=\"" + std::to_string(inRow) + "\" height=\"" + number(kBarHeight) + "\"/>";
    });
}

// The name stands in the first row that has room for it.
void drawName(std::string& svg, const Field& field) {
    bool isDrawn = false;
    forEachRow(field.offset, field.width, [&](std::size_t row, std::size_t column, std::size_t inRow) {
        if (isDrawn || static_cast<double>(inRow) < 1 + kLetterWidth * static_cast<double>(field.name.size()))
            return;
        isDrawn = true;
        svg += "<text x=\"" + number(static_cast<double>(kMargin + column) + 0.5) + "\" y=\"" +
               number(top(row) + kBaseline) + "\">" + std::string(field.name) + "</text>";
    });
}

void drawField(std::string& svg, const Field& field, const Value& value) {
    const std::string name(field.name);
    svg += "<a class=\"" + groupClass(field.group) + "\" href=\"#" + name + "\"><title>" + name + ": " +
           escapeHtml(field.meaning) + " (" + placeOf(field, value) + ")</title>";
    drawBytes(svg, "empty", field.offset, field.width);
    drawBytes(svg, "filled", field.offset, std::min(value.filled, field.width));
    drawName(svg, field);
    svg += "</a>\n";
}

void drawOffsets(std::string& svg) {
    for (std::size_t row = 0; row < rowCount(); ++row)
        svg += "<text class=\"offset\" x=\"0\" y=\"" + number(top(row) + kBaseline) + "\">" +
               hexOffset(row * kBytesInRow) + "</text>";
    svg += '\n';
}

// What the page's style needs of the picture's measures: a narrow page leaves out the margin.
std::string measures() {
    return "--shape: " + std::to_string(kWidth) + " / " + number(kHeight) +
           "; --margin: " + number(100.0 * kMargin / kBytesInRow) + "%";
}

}  // namespace

std::string placeOf(const Field& field, const Value& value) {
    const std::string place = hexOffset(field.offset) + ", ";
    if (field.type != FieldType::Text)
        return place + std::to_string(field.width) + " bytes";
    // A record that the module did not write may fill the last byte too.
    const std::size_t most = std::max(value.filled, field.limit);
    return place + std::to_string(value.filled) + " of " + std::to_string(most) + " bytes";
}

std::string mapOfBytes(const Record& record) {
    std::string svg = "<svg class=\"map\" style=\"" + measures() + "\" viewBox=\"0 0 " + std::to_string(kWidth) + " " +
                      number(kHeight) +
                      "\" preserveAspectRatio=\"none\" role=\"group\" aria-label=\"Map of the record's bytes\">\n";
    drawOffsets(svg);
    drawBytes(svg, "reserved", 0, KVCSTAT_RECORD_SIZE);
    svg += '\n';
    for (std::size_t i = 0; i < fields().size(); ++i)
        drawField(svg, fields()[i], record[i]);
    return svg + "</svg>\n";
}

}  // namespace kvstation
