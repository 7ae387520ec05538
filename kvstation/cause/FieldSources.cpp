#include "kvstation/cause/FieldSources.h"

#include <set>

#include "kvstation/Stage.h"
#include "kvstation/cause/CauseText.h"
#include "kvstation/cause/Causes.h"

namespace kvstation {
namespace {

struct Names {
    std::set<std::string> givers;
    std::set<std::string> deciders;
};

std::string joined(const std::set<std::string>& names) {
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

std::vector<std::string> sourcesOver(const std::vector<std::string>& folders) {
    std::vector<Names> all(fields().size());
    for (const std::string& folder : folders)
        for (const FieldCauses& causes : allCauses(readStationFolder(folder)))
            for (const Cause& cause : causes.causes)
                if (!isKeyThere(cause))
                    (cause.role != Role::Decides ? all[causes.field].givers : all[causes.field].deciders)
                        .insert(shortName(cause));
    std::vector<std::string> texts;
    for (const Names& names : all)
        texts.push_back(textOf(names));
    return texts;
}

}  // namespace kvstation
