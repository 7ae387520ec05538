#include "kvstation/commandline/VerbName.h"

#include <CLI/App.hpp>

#include "kvstation/platform/Errors.h"
#include "kvstation/text/Similar.h"

namespace kvstation {

const CLI::App& verbCalled(const CLI::App& tool, const std::string& typed) {
    const std::vector<const CLI::App*> verbs = tool.get_subcommands({});
    std::vector<std::string_view> names;
    for (const CLI::App* verb : verbs) {
        if (verb->check_name(typed))
            return *verb;
        names.push_back(verb->get_name());
    }
    if (typed == "import")  // Windows: natively it is a verb
        throw Failure("import needs the native (Linux) tool; 'kvstation simulate STATION' takes here what it wrote");
    throw WrongUse("'" + typed + "' is no verb" + describeSimilar(similarWords(typed, names)) +
                   "; 'kvstation --help' lists the verbs");
}

std::string helpHint(const CLI::App& command) {
    const CLI::App* tool = command.get_parent();
    return "'" + (tool != nullptr ? tool->get_name() + " " : "") + command.get_name() + " --help' tells more";
}

}  // namespace kvstation
