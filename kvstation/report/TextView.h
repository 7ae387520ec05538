// A record for people: grouped, aligned, what stayed empty said once at the end.
#pragma once

#include <cstddef>
#include <string>

#include "kvstation/report/Report.h"

namespace kvstation {

struct TextOptions {
    bool all = false;  // empty fields in their groups too
    bool colours = false;
    std::size_t width = 0;  // columns at which lines wrap; 0: never

    bool operator==(const TextOptions&) const = default;
};

std::string textView(const Report& report, const TextOptions& options);

}  // namespace kvstation
