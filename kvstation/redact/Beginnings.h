// Texts that are looked for in others, in a time that hardly grows with how many they are.
#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace kvstation {

class Beginnings {
  public:
    void add(std::string text) { m_texts.insert(std::move(text)); }

    // Calls visit(one) for each of them that the text begins with, the longest first.
    template <class Visit>
    void eachOf(std::string_view text, Visit visit) const {
        // What a text begins with stands before it in their order. What stands nearest before it begins as the longest
        // one does.
        for (auto after = m_texts.upper_bound(text); after != m_texts.begin(); after = m_texts.upper_bound(text)) {
            const std::string& nearest = *std::prev(after);
            const auto end = std::ranges::mismatch(nearest, text).in1;
            const bool isOne = end == nearest.end();
            if (isOne)
                visit(nearest);
            text = text.substr(0, static_cast<std::size_t>(end - nearest.begin()) - (isOne ? 1 : 0));
        }
    }

  private:
    std::set<std::string, std::less<>> m_texts;  // none is empty
};

}  // namespace kvstation
