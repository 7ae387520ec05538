#include "kvstation/experiments/Branches.h"

#include "kvstation/experiments/Experiments.h"

namespace kvstation {
namespace {

bool opensKey(const char* call) {
    return std::string_view(call).starts_with("RegOpenKey");
}

// Calls visit(station) for the station and for it with each version of Windows.
template <class Visit>
void eachVersion(const simwin::Station& station, Visit visit) {
    World world(station);
    visit(world.station());
    for (Alternative& alternative :
         alternativesAt(world, memberPlace({"version"}), findQuestion("GetVersionExA")->asks.samples)) {
        world.make(alternative.changes);
        visit(world.station());
        world.unmake(alternative.changes);
    }
}

using Version = std::optional<simwin::WindowsVersion>;

// That of the station, and one for each other way that a version of Windows leads: which keys are opened, and when.
std::vector<Version> versionsByWay(const simwin::Station& station, const Collector& collector) {
    std::vector<Version> all;
    std::set<std::uint64_t> ways;
    simwin::AskedQuestions opened(opensKey);
    eachVersion(station, [&](const std::shared_ptr<const simwin::Station>& one) {
        simwin::Machine machine(one);
        machine.noteQuestions(&opened);
        runOn(collector, machine);
        if (ways.insert(opened.takeWay()).second)
            all.push_back(one->version);
    });
    return all;
}

std::uint64_t identityOf(const simwin::ObservedCall& call) {
    simwin::Identity identity;
    identity.add(std::string_view(call.name));
    identity.add(std::uint64_t{call.succeeded});
    identity.add(std::string_view(call.subject));
    for (const simwin::Fact& fact : call.parameters) {
        identity.add(fact.index());
        if (const auto* number = std::get_if<std::uint64_t>(&fact))
            identity.add(*number);
        else
            identity.add(simwin::textOf(fact));
    }
    return identity.value();
}

}  // namespace

std::optional<Place> AskedPlaces::add(const simwin::ObservedCall& call) {
    if (!m_calls.insert(identityOf(call)).second)
        return std::nullopt;
    const CallRow* row = findQuestion(call.name);
    if (row == nullptr)
        return std::nullopt;
    Place place = row->asks.place(call);
    if (place.kind == Place::Kind::None || !m_places.try_emplace(place.id(), Asked{place, row->asks.words}).second)
        return std::nullopt;
    return place;
}

void AskedPlaces::add(const std::vector<AskedCall>& calls) {
    for (const AskedCall& one : calls)
        add(one.call);
}

std::vector<Place> AskedPlaces::addNew(const std::vector<simwin::ObservedCall>& calls) {
    std::vector<Place> fresh;
    for (const simwin::ObservedCall& one : calls)
        if (std::optional<Place> place = add(one))
            fresh.push_back(std::move(*place));
    return fresh;
}

bool AskedPlaces::add(const AskedPlaces& other) {
    const std::size_t before = m_places.size();
    m_places.insert(other.m_places.begin(), other.m_places.end());
    return m_places.size() != before;
}

AskedPlaces askedOnce(const simwin::Station& station, const Collector& collector) {
    AskedPlaces asked;
    simwin::AskedQuestions questions(isQuestion);
    simwin::Machine machine(station);
    machine.noteQuestions(&questions);
    runOn(collector, machine);
    asked.addNew(questions.takeNew());
    return asked;
}

AskedPlaces askedByVersions(const simwin::Station& station, const Collector& collector) {
    AskedPlaces asked;
    simwin::AskedQuestions questions(isQuestion);
    eachVersion(station, [&](const std::shared_ptr<const simwin::Station>& one) {
        simwin::Machine machine(one);
        machine.noteQuestions(&questions);
        runOn(collector, machine);
        asked.addNew(questions.takeNew());
    });
    return asked;
}

AskedPlaces askedInBranches(const simwin::Station& station, const Collector& collector, const FillIn& fillIn) {
    AskedPlaces asked;
    std::vector<Place> fresh;
    ExperimentOptions options;
    options.outputs = Outputs();
    options.newQuestions = [&](const std::vector<simwin::ObservedCall>& calls) { fresh = asked.addNew(calls); };
    options.everyWord = true;
    for (const Version& version : versionsByWay(station, collector)) {
        simwin::Station one = station;
        one.version = version;
        World world(std::move(one));
        options.fillIn = [&] { return fillIn && fillIn(fresh, world.described()); };
        const Experiments experiments(world, collector, options);
        asked.add(experiments.calls());
        options.everyWord = false;  // settings are the same on every version
    }
    return asked;
}

}  // namespace kvstation
