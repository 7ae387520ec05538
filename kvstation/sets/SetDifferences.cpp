#include "kvstation/sets/SetDifferences.h"

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>

#include "kvstation/report/JsonView.h"
#include "kvstation/text/JoinWords.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

using Json = nlohmann::ordered_json;

// More names tell people no more.
constexpr std::size_t kShownNames = 20;

// "3 stations"; of one "1 station".
std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

template <class One, class NameOf>
std::string shownNames(const std::vector<One>& all, NameOf nameOf) {
    const std::span shown(all.data(), std::min(all.size(), kShownNames));
    const std::string names = joinWords(shown, ", ", [&](const One& one) { return visible(std::invoke(nameOf, one)); });
    return names + (all.size() > kShownNames ? " and " + std::to_string(all.size() - kShownNames) + " more" : "");
}

std::string namesLine(const std::string& what, const std::vector<std::string>& names) {
    if (names.empty())
        return {};
    return what + ": " + counted(names.size(), "station") + "\n  " + shownNames(names, std::identity()) + "\n";
}

Json changesJson(const std::vector<FieldChange>& changes) {
    Json list = Json::array();
    for (const FieldChange& change : changes)
        list.push_back(
            {{"name", change.name}, {"left", Json::parse(change.left)}, {"right", Json::parse(change.right)}});
    return list;
}

}  // namespace

std::string differencesText(const SetDifferences& differences) {
    std::string text = "- " + visible(differences.left) + "\n+ " + visible(differences.right) + "\n\n";
    text += namesLine("went", differences.went) + namesLine("came", differences.came);
    for (std::size_t i = 0; i < fields().size(); ++i) {
        const std::vector<FieldChange>& changes = differences.fields[i];
        if (changes.empty())
            continue;
        text += std::string(fields()[i].name) + ": " + counted(changes.size(), "station") + "\n  " +
                shownNames(changes, &FieldChange::name) + "\n";
    }
    return text + std::to_string(differences.differing) + " of " + std::to_string(differences.compared) +
           " on both sides differ\n";
}

std::string differencesJson(const SetDifferences& differences) {
    Json changed = Json::object();
    for (std::size_t i = 0; i < fields().size(); ++i)
        if (!differences.fields[i].empty())
            changed[std::string(fields()[i].name)] = changesJson(differences.fields[i]);
    return printed({{"left", differences.left},
                    {"right", differences.right},
                    {"went", differences.went},
                    {"came", differences.came},
                    {"compared", differences.compared},
                    {"differing", differences.differing},
                    {"fields", changed}});
}

}  // namespace kvstation
