// All verbs, as the tool is to list them.
#pragma once

namespace kvstation {

inline constexpr const char* kVerbs[] = {
#define KV_VERB(word, add) word,
#include "kvstation/verbs/Verbs.inc"
};

}  // namespace kvstation
