// Forms of what the network tells: addresses in JSON.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "simwin/station/Forms.h"

namespace simwin {

// The name of a member: an IPv4 address as it stands.
struct DottedAddress {
    static constexpr std::string_view kPlaceholder = "ADDRESS";
    static constexpr std::string_view kMeaning = "IPv4 address such as 10.0.0.5";
    static constexpr Tells kTells = Tells::Address;
    static std::string read(const std::string& address, const JsonView& value);
};

// Raw bytes of addresses that are all of one length.
struct AddressListForm : ListOf<TextForm> {
    static void read(const JsonView& view, std::vector<std::string>& addresses);
    static JsonView::Json write(const std::vector<std::string>& addresses);
    static void tell(MemberText& member, MemberTexts&);
};

struct LengthRange {
    std::size_t least;
    std::size_t most;
};

std::string readPhysicalAddress(const JsonView& view, LengthRange lengths);
JsonView::Json writePhysicalAddress(std::string_view bytes);
std::string meaningOfPhysicalAddress(LengthRange lengths);

// The raw bytes of a physical address of a length from `Least` to `Most`.
template <std::size_t Least, std::size_t Most>
struct PhysicalAddressForm : TextForm {
    static void read(const JsonView& view, std::string& bytes) { bytes = readPhysicalAddress(view, {Least, Most}); }
    static JsonView::Json write(std::string_view bytes) { return writePhysicalAddress(bytes); }
    static void tell(MemberText& member, MemberTexts&) { member.value = meaningOfPhysicalAddress({Least, Most}); }
};

}  // namespace simwin
