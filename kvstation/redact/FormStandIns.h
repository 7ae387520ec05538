// Stand-ins for what texts show by one form, such as IPv4 addresses.
#pragma once

#include <string>
#include <string_view>

#include "kvstation/redact/TextPlace.h"

namespace kvstation {

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
};

}  // namespace kvstation
