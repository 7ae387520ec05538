#include "kvstation/experiments/Questions.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

// A call that the station fails by its list of such calls has its answer there, and so have a key that is denied and a
// library that is missing.
Place placeOf(const CallRow& row, const simwin::ObservedCall& call, const World& world) {
    if (!call.succeeded && world.find({"fails", call.name}) != nullptr)
        return memberPlace({"fails", call.name});
    Place place = row.asks.place(call);
    if (place.kind == Place::Kind::Key && !call.succeeded)
        for (const std::string& key : world.station()->deniedKeys)
            if (simwin::equalNoCase(simwin::withClassesInPlace(key), place.key))
                return {.kind = Place::Kind::Item, .member = {"deniedKeys"}, .value = simwin::toUtf8(key)};
    if (call.name == "LoadLibraryA" && !call.succeeded)
        for (const std::string& library : world.station()->missing)
            if (simwin::equalNoCase(library, simwin::textOf(call.parameters[0])))
                return {.kind = Place::Kind::Item, .member = {"missing"}, .value = simwin::toUtf8(library)};
    place.member = world.resolved(std::move(place.member));
    return place;
}

// A question for data tells more than the one for its size before it, but that one told the type.
void takeIn(simwin::ObservedCall& told, const simwin::ObservedCall& call) {
    const auto count = [](const simwin::ObservedCall& one) {
        return std::ranges::count_if(one.parameters, [](const simwin::Fact& fact) { return fact.index() != 0; });
    };
    const bool tellsMore = call.succeeded != told.succeeded ? call.succeeded : count(call) >= count(told);
    simwin::ObservedCall other = tellsMore ? std::exchange(told, call) : call;
    if (told.succeeded && other.succeeded)
        for (std::size_t i = 0; i < told.parameters.size(); ++i)
            if (told.parameters[i].index() == 0)
                told.parameters[i] = std::move(other.parameters[i]);
}

}  // namespace

std::vector<Question> questionsOf(const std::vector<AskedCall>& calls, const World& world) {
    std::vector<Question> questions;
    std::unordered_map<std::string, std::size_t> known;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const simwin::ObservedCall& call = calls[i].call;
        const CallRow* row = findQuestion(call.name);
        if (row == nullptr)
            continue;
        Place where = placeOf(*row, call, world);
        const std::string identity = call.name + '\0' + call.subject + '\0' + call.arguments + '\0' + where.id();
        const auto [place, isNew] = known.emplace(identity, questions.size());
        if (isNew)
            questions.push_back({row, std::move(where), call, false, {}, {}});
        Question& question = questions[place->second];
        if (!isNew)
            takeIn(question.call, call);
        question.canFail = question.canFail || calls[i].failable != 0;
        question.occurrences.push_back({i, {}});
    }
    return questions;
}

}  // namespace kvstation
