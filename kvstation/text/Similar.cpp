#include "kvstation/text/Similar.h"

#include <algorithm>
#include <numeric>

#include "kvstation/text/JoinWords.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kMostWords = 3;
constexpr std::size_t kLongestWord = 64;

std::string inSmallLetters(std::string_view word) {
    std::string text(word);
    std::ranges::transform(text, text.begin(), simwin::lowerAscii);
    return text;
}

// Letters to insert, remove or replace.
std::size_t editDistance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::vector<std::string_view> similarWords(std::string_view typed, std::span<const std::string_view> words) {
    struct Candidate {
        std::size_t distance;
        std::string_view word;
    };
    if (typed.empty() || typed.size() > kLongestWord)
        return {};
    const std::string wanted = inSmallLetters(typed);
    const std::size_t farthest = std::max<std::size_t>(2, wanted.size() / 3);
    std::vector<Candidate> candidates;
    for (const std::string_view word : words) {
        const std::string candidate = inSmallLetters(word);
        const std::size_t distance = editDistance(wanted, candidate);
        if (distance <= farthest || (wanted.size() > 1 && candidate.find(wanted) != std::string::npos))
            candidates.push_back({distance, word});
    }
    std::ranges::stable_sort(candidates, {}, &Candidate::distance);
    std::vector<std::string_view> closest;
    for (const Candidate& candidate : candidates)
        if (closest.size() < kMostWords)
            closest.push_back(candidate.word);
    return closest;
}

std::string describeSimilar(std::span<const std::string_view> words) {
    return words.empty() ? "" : "; close to it: " + joinWords(words, ", ");
}

}  // namespace kvstation
