// What a text shows by its form alone, whoever wrote it, such as an IPv4 address. Each form has a file of its own.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "kvstation/redact/Chance.h"
#include "kvstation/redact/PageText.h"
#include "kvstation/redact/TextPlace.h"

namespace kvstation {

// The stand-ins for what has one form.
class FormStandIns {
  public:
    FormStandIns() = default;
    FormStandIns(const FormStandIns&) = delete;
    FormStandIns& operator=(const FormStandIns&) = delete;
    virtual ~FormStandIns() = default;

    // Told of each that a text shows, before the first stand-in is asked for.
    virtual void learn(std::string_view /*shown*/, TextPlace /*place*/) {}
    // What takes its place, as long as it and in its writing; the text itself where that may stay.
    virtual std::string standIn(std::string_view shown, TextPlace place) = 0;

    // The same of one by its bytes, where the form has such.
    virtual void learnBytes(std::string_view /*bytes*/) {}
    virtual std::string ofBytes(std::string_view bytes) { return std::string(bytes); }
    // Replaces those that are known, in binary data.
    virtual void replaceIn(std::string& /*data*/) const {}
};

// Has a word, in lower case, replaced like any other from now on.
using AddWord = std::function<void(const PageText& word, const PageText& standIn)>;

struct TextForm {
    // How many characters one takes at a place of the text, 0 where none begins.
    std::size_t (*lengthAt)(PageTextView text, std::size_t place);
    // Whether a mailbox may begin with one, or have one for a domain: 10.1.2.3@srv is a mailbox as a whole, but
    // 00-1a-2b-3c-4d-5e@srv a physical address and something else.
    bool isInMailboxes;
    std::unique_ptr<FormStandIns> (*makeStandIns)(Chance& chance, const AddWord& addWord);
};

template <class OfForm>
std::unique_ptr<FormStandIns> makeStandIns(Chance& chance, const AddWord& addWord) {
    return std::make_unique<OfForm>(chance, addWord);
}

extern const TextForm kPhysicalForm;     // six to sixteen pairs of hexadecimal digits joined by "-" or by ":"
extern const TextForm kLongAddressForm;  // an IPv6 address
extern const TextForm kAddressForm;      // a dotted IPv4 address; it may be the version of a program

// In the order in which they are tried: eight pairs joined by ":" are a physical address.
inline constexpr const TextForm* kTextForms[] = {&kPhysicalForm, &kLongAddressForm, &kAddressForm};

}  // namespace kvstation
