#include "kvstation/hives/Hive.h"

#include <algorithm>

#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestKeyName = 255;

}  // namespace

bool fitsPath(std::string_view keyName) {
    const bool isShort = keyName.size() <= kLongestKeyName || simwin::toUtf16(keyName).size() <= kLongestKeyName;
    return !keyName.empty() && isShort && simwin::findCharacter(keyName, '\\') == std::string_view::npos &&
           std::ranges::none_of(keyName, simwin::isControl);
}

}  // namespace kvstation
