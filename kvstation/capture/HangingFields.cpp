#include "kvstation/capture/HangingFields.h"

namespace kvstation {

HangingFields::HangingFields(const Experiments& experiments) {
    std::map<std::size_t, const Occurrence*> occurrences;
    for (const Question& question : experiments.questions())
        for (const Occurrence& occurrence : question.occurrences)
            occurrences[occurrence.call] = &occurrence;
    std::map<std::string, std::size_t> count;
    for (std::size_t i = 0; i < experiments.calls().size(); ++i) {
        const std::string question = questionOf(experiments.calls()[i].call);
        std::vector<std::string>& names = m_names[{question, count[question]++}];
        if (const auto found = occurrences.find(i); found != occurrences.end())
            for (const auto& [output, role] : found->second->roles)
                if (output != kTraceOutput)
                    names.push_back(experiments.nameOf(output));
    }
}

std::vector<std::string> HangingFields::next(const simwin::ObservedCall& call) {
    const std::string question = questionOf(call);
    const auto found = m_names.find({question, m_count[question]++});
    return found != m_names.end() ? found->second : std::vector<std::string>();
}

std::string HangingFields::questionOf(const simwin::ObservedCall& call) {
    return call.name + '\0' + call.subject + '\0' + call.arguments;
}

}  // namespace kvstation
