// Texts in JSON. Those of a station are bytes of its ANSI code page.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>

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

// Base of forms of what holds no text but words that are nobody's, since the reader takes no other ones.
struct KnownWords {
    static constexpr bool kIsText = false;
    static void eachText(const auto&, const Told&, const TextVisitor&) {}
    static ToldAt at(PathBelow path, Tells) { return {.isMember = path.empty()}; }
};

// Base of forms of a value without members and texts.
struct OneValue : KnownWords {
    template <class Value>
    requires std::is_trivially_copyable_v<Value>
    static void eachText(const Value&, const Told&, const TextVisitor&) {}
};

// A text, or its bytes where they would not come back.
struct TextForm {
    static constexpr bool kIsText = true;
    static void read(const JsonView& view, std::string& text) { text = readText(view); }
    static JsonView::Json write(std::string_view text);
    static void tell(MemberText& member, MemberTexts&) { member.value = "text"; }
    static void eachText(std::string& text, const Told& told, const TextVisitor& visit) { visit(text, told); }
    static ToldAt at(PathBelow path, Tells tells) { return {.isMember = path.empty(), .text = tells}; }
};

// A text that stays UTF-8 as it is.
struct Utf8Form : TextForm {
    static void read(const JsonView& view, std::string& text) { text = view.utf8(); }
    static JsonView::Json write(const std::string& text) { return text; }
};

// Bytes that are written as such even where they are a text.
struct BytesForm : TextForm {
    static JsonView::Json write(std::string_view bytes);
    static void tell(MemberText& member, MemberTexts&) { member.value = "bytes, `{\"hex\": ...}`"; }
};

}  // namespace simwin
