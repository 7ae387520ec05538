#include "simwin/station/NetworkForms.h"

#include <optional>

#include "simwin/text/Address.h"
#include "simwin/text/HexText.h"

namespace simwin {
namespace {

constexpr std::size_t kIPv4Size = 4;

std::string readDotted(const std::string& text, const JsonView& view) {
    const std::optional<std::string> bytes = parseDotted(text);
    if (!bytes)
        view.fail("is no " + std::string(DottedAddress::kMeaning));
    return *bytes;
}

}  // namespace

std::string DottedAddress::read(const std::string& address, const JsonView& value) {
    return dotted(readDotted(address, value));
}

void AddressListForm::read(const JsonView& view, std::vector<std::string>& addresses) {
    view.eachItem([&](const JsonView& item) {
        addresses.push_back(item.isObject() ? readText(item) : readDotted(item.utf8(), item));
        if (addresses.back().size() != addresses.front().size())
            item.fail("is not as long as the first address");
    });
}

JsonView::Json AddressListForm::write(const std::vector<std::string>& addresses) {
    JsonView::Json list = JsonView::Json::array();
    for (const std::string& address : addresses)
        list.push_back(address.size() == kIPv4Size ? JsonView::Json(dotted(address)) : BytesForm::write(address));
    return list;
}

void AddressListForm::tell(MemberText& member, MemberTexts&) {
    member.value = "list, of each: " + std::string(DottedAddress::kMeaning) + ", or bytes; all of one length";
}

std::string readPhysicalAddress(const JsonView& view, LengthRange lengths) {
    std::string bytes = view.isObject() ? readText(view) : readHex(view);
    if (bytes.size() < lengths.least || bytes.size() > lengths.most)
        view.fail("is no " + meaningOfPhysicalAddress(lengths));
    return bytes;
}

JsonView::Json writePhysicalAddress(std::string_view bytes) {
    return hexText(bytes, '-');
}

std::string meaningOfPhysicalAddress(LengthRange lengths) {
    return "physical address of " + (lengths.least == lengths.most ? "" : std::to_string(lengths.least) + " to ") +
           std::to_string(lengths.most) + " bytes, such as 00-0C-29-AB-CD-EF";
}

}  // namespace simwin
