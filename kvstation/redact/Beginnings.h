// Texts that are looked for in others, in a time that hardly grows with how many they are.
#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace kvstation {

template <class Text>
class BasicBeginnings {
  public:
    using View = std::basic_string_view<typename Text::value_type>;

    void add(Text text) { m_texts.insert(std::move(text)); }

    // Calls visit(one) for each of them that the text begins with, the longest first.
    template <class Visit>
    void eachOf(View text, Visit visit) const {
        // What a text begins with stands before it in their order. What stands nearest before it begins as the longest
        // one does.
        for (auto after = m_texts.upper_bound(text); after != m_texts.begin(); after = m_texts.upper_bound(text)) {
            const Text& nearest = *std::prev(after);
            const auto end = std::ranges::mismatch(nearest, text).in1;
            const bool isOne = end == nearest.end();
            if (isOne)
                visit(nearest);
            text = text.substr(0, static_cast<std::size_t>(end - nearest.begin()) - (isOne ? 1 : 0));
        }
    }

  private:
    std::set<Text, std::less<>> m_texts;  // none is empty
};

using Beginnings = BasicBeginnings<std::string>;

}  // namespace kvstation
