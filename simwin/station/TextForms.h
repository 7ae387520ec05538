// Texts in JSON. Those of a station are bytes of its ANSI code page.
#pragma once

#include <string>
#include <string_view>

#include "simwin/station/Member.h"

namespace simwin {

// The name of the member that holds a text's bytes.
inline constexpr char kHex[] = "hex";

// Code-page bytes of a UTF-8 text that stands in `view`, as its value or its name.
std::string toCodePage(const std::string& utf8, const JsonView& view);

// A row of bytes: "41 42", "41-42" or "4142".
std::string readHex(const JsonView& view);

// A text, or its bytes as {"hex": "41 42"}.
std::string readText(const JsonView& view);

// Base of forms of a value without members and texts of its own.
struct OneValue {
    static constexpr bool kIsText = false;
    static void eachText(const auto&, Tells, const TextVisitor&) {}
};

// A text, or its bytes where they would not come back.
struct TextForm {
    static constexpr bool kIsText = true;
    static void read(const JsonView& view, std::string& text) { text = readText(view); }
    static JsonView::Json write(std::string_view text);
    static void tell(MemberText& member, MemberTexts&) { member.value = "text"; }
    static void eachText(std::string& text, Tells tells, const TextVisitor& visit) { visit(text, tells); }
};

// A text that stays UTF-8 as it is.
struct Utf8Form : TextForm {
    static void read(const JsonView& view, std::string& text) { text = view.utf8(); }
    static JsonView::Json write(const std::string& text) { return text; }
};

// Bytes that are written as such even where they are a text.
struct BytesForm : OneValue {
    static void read(const JsonView& view, std::string& bytes) { bytes = readText(view); }
    static JsonView::Json write(std::string_view bytes);
    static void tell(MemberText& member, MemberTexts&) { member.value = "bytes, `{\"hex\": ...}`"; }
};

}  // namespace simwin
