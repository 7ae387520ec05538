// Readers of JSON members into the values of a station. Each says what is wrong with a value by throwing ReadError.
#pragma once

#include <concepts>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simwin/station/JsonView.h"
#include "simwin/station/Station.h"

namespace simwin {

using Read = std::function<void(const JsonView&)>;

struct Member {
    std::string_view name;
    Read read;
};

// Reads every member of an object; one that is not listed is an error.
void readMembers(const JsonView& object, std::initializer_list<Member> members);

// Code-page bytes of a UTF-8 text that stands in `view`, as its value or its name.
std::string toCodePage(const std::string& utf8, const JsonView& view);

// A row of bytes: "41 42", "41-42" or "4142".
std::string readHex(const JsonView& view);

// A text, or its bytes as {"hex": "41 42"}.
std::string readText(const JsonView& view);

// Readers that put a member's value into its place.
template <std::integral Number>
Read into(Number& place) {
    return [&place](const JsonView& value) { place = value.number<Number>(); };
}
template <std::integral Number>
Read into(std::optional<Number>& place) {
    return [&place](const JsonView& value) { place = value.number<Number>(); };
}
Read into(bool& place);
Read into(std::string& place);
Read into(OptionalText& place);
Read into(std::vector<std::string>& place);
// A companion's text, or {"text": ..., "result": 0, "terminated": false}.
Read into(std::optional<CompanionText>& place);

}  // namespace simwin
