#include "kvstation/sets/Pattern.h"

#include <algorithm>

#include "kvstation/platform/Files.h"
#include "simwin/text/Utf8.h"

namespace kvstation {
namespace {

std::size_t firstLength(std::string_view name) {
    return std::max<std::size_t>(simwin::decodeUtf8(name).length, 1);
}

// What of `folder` matches the one name, or the folder that is named.
std::vector<std::filesystem::path> below(const std::filesystem::path& folder, const std::filesystem::path& name) {
    const std::string pattern = utf8Of(name);
    std::error_code error;
    if (!isPattern(pattern))
        return std::filesystem::exists(folder / name, error) ? std::vector{folder / name}
                                                             : std::vector<std::filesystem::path>();
    std::vector<std::filesystem::path> found;
    const std::filesystem::path listed = folder.empty() ? std::filesystem::path(".") : folder;
    for (std::filesystem::directory_iterator at(listed, error), end; !error && at != end; at.increment(error)) {
        const std::string candidate = utf8Of(at->path().filename());
        if (candidate.starts_with('.') == pattern.starts_with('.') && matches(candidate, pattern))
            found.push_back(folder / at->path().filename());
    }
    std::ranges::sort(found);
    return found;
}

}  // namespace

bool isPattern(std::string_view path) {
    return path.find_first_of("*?") != std::string_view::npos;
}

// Behind each "*" the shortest run is tried first; a later "*" never needs an earlier one to be tried again.
bool matches(std::string_view name, std::string_view pattern) {
    std::string_view behindStar;
    std::string_view tried;
    bool hasStar = false;
    while (!name.empty()) {
        if (pattern.starts_with('*')) {
            pattern.remove_prefix(1);
            behindStar = pattern;
            tried = name;
            hasStar = true;
        } else if (pattern.starts_with('?')) {
            pattern.remove_prefix(1);
            name.remove_prefix(firstLength(name));
        } else if (!pattern.empty() && pattern.front() == name.front()) {
            pattern.remove_prefix(1);
            name.remove_prefix(1);
        } else if (hasStar) {
            tried.remove_prefix(firstLength(tried));
            name = tried;
            pattern = behindStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*') == std::string_view::npos;
}

std::vector<std::string> pathsLike(const std::string& pattern) {
    const std::filesystem::path whole = pathOf(pattern);
    std::vector<std::filesystem::path> found = {whole.root_path()};
    for (const std::filesystem::path& name : whole.relative_path()) {
        std::vector<std::filesystem::path> next;
        for (const std::filesystem::path& folder : found)
            std::ranges::move(below(folder, name), std::back_inserter(next));
        found = std::move(next);
    }
    std::vector<std::string> paths;
    paths.reserve(found.size());
    for (const std::filesystem::path& path : found)
        paths.push_back(utf8Of(path));
    return paths;
}

}  // namespace kvstation
