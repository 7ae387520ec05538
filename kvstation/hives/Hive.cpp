#include "kvstation/hives/Hive.h"

#include <algorithm>

#include "simwin/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestKeyName = 255;

}  // namespace

bool fitsPath(std::string_view keyName) {
    return !keyName.empty() && keyName.size() <= kLongestKeyName && keyName.find('\\') == std::string_view::npos &&
           std::ranges::none_of(keyName, simwin::isControl);
}

}  // namespace kvstation
