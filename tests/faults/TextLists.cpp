#include "tests/faults/TextLists.h"

namespace kvtest {
namespace {

// What can follow the item at `place`.
using Remaining = Items (*)(const Items& items, std::size_t place);

Items behind(const Items& items, std::size_t place) {
    return {items.begin() + static_cast<std::ptrdiff_t>(place) + 1, items.end()};
}

Items allBut(const Items& items, std::size_t place) {
    Items others = items;
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(place));
    return others;
}

bool isMadeOf(const Items& items, std::string_view list, bool isCut, Remaining remaining) {
    for (std::size_t place = 0; place < items.size(); ++place) {
        for (const std::string_view text : items[place]) {
            if (list == text || (isCut && text.starts_with(list)))
                return true;
            if (list.starts_with(std::string(text) + ";") &&
                isMadeOf(remaining(items, place), list.substr(text.size() + 1), isCut, remaining))
                return true;
        }
    }
    // Cut right behind a separator or in front of it.
    return isCut && list.empty();
}

}  // namespace

bool isSelection(const Items& items, std::string_view list, bool isCut) {
    return isMadeOf(items, list, isCut, behind);
}

bool isArrangement(const Items& items, std::string_view list, bool isCut) {
    return isMadeOf(items, list, isCut, allBut);
}

}  // namespace kvtest
