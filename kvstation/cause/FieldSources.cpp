#include "kvstation/cause/FieldSources.h"

#include <set>

#include "kvstation/cause/CauseText.h"
#include "kvstation/collect/Stage.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

// Stations spell a variable each in its own way.
struct InAnyCase {
    bool operator()(const std::string& left, const std::string& right) const {
        return simwin::upperCaseInUtf8(left) < simwin::upperCaseInUtf8(right);
    }
};
using NameSet = std::set<std::string, InAnyCase>;

struct Names {
    NameSet givers;
    NameSet deciders;
};

std::string joined(const NameSet& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "`" : ", `") + name + "`";
    return text;
}

std::string textOf(Names names) {
    for (const std::string& giver : names.givers)
        names.deciders.erase(giver);
    const std::string deciders = joined(names.deciders);
    return joined(names.givers) +
           (deciders.empty() ? "" : (names.givers.empty() ? "decided by " : "; decided by ") + deciders);
}

}  // namespace

std::vector<std::vector<FieldCauses>> causesOver(const std::vector<std::string>& folders) {
    std::vector<std::vector<FieldCauses>> stations;
    stations.reserve(folders.size());
    for (const std::string& folder : folders)
        stations.push_back(allCauses(readStationFolder(folder)));
    return stations;
}

std::vector<std::string> sourcesIn(const std::vector<std::vector<FieldCauses>>& stations) {
    std::vector<Names> all(fields().size());
    for (const std::vector<FieldCauses>& station : stations)
        for (const FieldCauses& causes : station)
            for (const Cause& cause : causes.causes)
                if (!isKeyThere(cause))
                    (cause.role != Role::Decides ? all[causes.field].givers : all[causes.field].deciders)
                        .insert(shortName(cause));
    std::vector<std::string> texts;
    texts.reserve(all.size());
    for (const Names& names : all)
        texts.push_back(textOf(names));
    return texts;
}

}  // namespace kvstation
