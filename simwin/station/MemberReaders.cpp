#include "simwin/station/MemberReaders.h"

#include <charconv>

#include "simwin/text/CodePage.h"

namespace simwin {

void readMembers(const JsonView& object, std::initializer_list<Member> members) {
    object.eachMember([&](const std::string& name, const JsonView& value) {
        for (const Member& member : members)
            if (member.name == name)
                return member.read(value);
        value.fail("is not known");
    });
}

namespace {

bool isHexDigit(char character) {
    return std::string_view("0123456789abcdefABCDEF").find(character) != std::string_view::npos;
}

}  // namespace

std::string readHex(const JsonView& view) {
    const std::string text = view.utf8();
    std::string bytes;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ' || text[i] == '-') {
            ++i;
            continue;
        }
        if (i + 1 == text.size() || !isHexDigit(text[i]) || !isHexDigit(text[i + 1]))
            view.fail("is no row of bytes of two hexadecimal digits each");
        unsigned byte = 0;
        std::from_chars(text.data() + i, text.data() + i + 2, byte, 16);
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
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
    readMembers(view, {{"hex", [&](const JsonView& hex) { bytes = readHex(hex); }}});
    return bytes;
}

Read into(bool& place) {
    return [&place](const JsonView& value) { place = value.flag(); };
}

Read into(std::string& place) {
    return [&place](const JsonView& value) { place = readText(value); };
}

Read into(OptionalText& place) {
    return [&place](const JsonView& value) { place = readText(value); };
}

Read into(std::vector<std::string>& place) {
    return [&place](const JsonView& list) {
        list.eachItem([&](const JsonView& item) { place.push_back(readText(item)); });
    };
}

Read into(std::optional<CompanionText>& place) {
    return [&place](const JsonView& value) {
        CompanionText& text = place.emplace();
        bool isRaw = !value.isObject();
        if (!isRaw)
            value.eachMember([&](const std::string& name, const JsonView&) { isRaw = isRaw || name == "hex"; });
        if (isRaw)
            text.text = readText(value);
        else
            readMembers(
                value,
                {{"text", into(text.text)}, {"result", into(text.result)}, {"terminated", into(text.terminated)}});
    };
}

}  // namespace simwin
