// All verbs, as the tool is to list them.
#pragma once

namespace kvstation {

inline constexpr const char* kVerbs[] = {"show",   "simulate", "decode", "diff",   "layout", "trace",      "explain",
                                         "whatif", "capture",  "redact", "import", "help",   "completion", "man"};

}  // namespace kvstation
