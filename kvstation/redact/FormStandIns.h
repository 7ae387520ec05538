// Stand-ins for what texts show by one form, such as IPv4 addresses.
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

#include "kvstation/redact/NamedParts.h"
#include "kvstation/redact/TextPlace.h"

namespace kvstation {

class FormStandIns;
// By the kinds of parts that they stand for.
using FormsByKind = std::map<PartKind, FormStandIns*>;

class FormStandIns {
  public:
    // Puts itself among the forms, for these kinds.
    FormStandIns(FormsByKind& forms, std::initializer_list<PartKind> kinds) {
        for (const PartKind kind : kinds)
            forms[kind] = this;
    }
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

}  // namespace kvstation
