#include "kvstation/platform/JoinWords.h"

namespace kvstation {

std::string joinWords(const std::vector<std::string>& words, std::string_view between) {
    std::string text;
    for (const std::string& word : words)
        text.append(text.empty() ? "" : between).append(word);
    return text;
}

}  // namespace kvstation
