#include "kvstation/hives/HiveKind.h"

#include <algorithm>
#include <initializer_list>

#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

struct KnownHive {
    std::string_view name;
    std::initializer_list<std::string_view> rootKeys;  // that it has, all of them, and none before it
};

const KnownHive kKnownHives[] = {
    {"SYSTEM", {"Select"}},
    {"SYSTEM", {"ControlSet001"}},
    {"SYSTEM", {"ControlSet002"}},
    {"SYSTEM.DAT", {"System", "Enum"}},
    {"USER.DAT", {".DEFAULT"}},
    {"SOFTWARE", {"Microsoft", "Classes"}},
    {"NTUSER.DAT", {"Software", "Control Panel"}},
    {"NTUSER.DAT", {"Software", "Environment"}},
    {"UsrClass.dat", {"Local Settings"}},
    {"UsrClass.dat", {"CLSID"}},
    {"SAM", {"SAM"}},
    {"SECURITY", {"Policy"}},
    {"COMPONENTS", {"DerivedData"}},
    {"BCD", {"Objects"}},
};

}  // namespace

std::string_view kindOf(Hive& hive) {
    const Hive::SubKeys& keys = hive.subKeys(hive.root());
    const auto isThere = [&](std::string_view name) {
        return std::ranges::any_of(keys.all,
                                   [&](const Hive::SubKey& key) { return simwin::equalNoCase(key.name, name); });
    };
    for (const KnownHive& kind : kKnownHives)
        if (std::ranges::all_of(kind.rootKeys, isThere))
            return kind.name;
    return {};
}

}  // namespace kvstation
