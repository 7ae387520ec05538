#include "simwin/station/TextForms.h"

#include <algorithm>

#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace simwin {

std::string readHex(const JsonView& view) {
    const std::string text = view.utf8();
    std::string bytes;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ' || text[i] == '-') {
            ++i;
            continue;
        }
        const std::optional<char> byte = byteOfHex(std::string_view(text).substr(i, 2));
        if (i + 1 == text.size() || !byte)
            view.fail("is no row of bytes of two hexadecimal digits each");
        bytes.push_back(*byte);
        i += 2;
    }
    return bytes;
}

std::string toCodePage(const std::string& utf8, const JsonView& view) {
    Utf8Error error{};
    const std::optional<std::string> bytes = fromUtf8(utf8, error);
    if (!bytes)
        view.fail(error.outsideCodePage
                      ? "holds a character that code page " + std::to_string(codePageInForce()) + " does not have"
                      : "is no UTF-8 text");
    return *bytes;
}

std::string readText(const JsonView& view) {
    if (!view.isObject())
        return toCodePage(view.utf8(), view);
    std::string bytes;
    view.eachMember([&](const std::string& name, const JsonView& value) {
        if (name != kHex)
            value.failUnknown();
        bytes = readHex(value);
    });
    return bytes;
}

JsonView::Json TextForm::write(std::string_view text) {
    if (std::ranges::any_of(text, isControl) || !survivesUtf8(text))
        return BytesForm::write(text);
    return toUtf8(text);
}

JsonView::Json BytesForm::write(std::string_view bytes) {
    return {{kHex, hexText(bytes, ' ')}};
}

}  // namespace simwin
