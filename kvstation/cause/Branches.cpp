#include "kvstation/cause/Branches.h"

#include "kvstation/cause/Experiments.h"

namespace kvstation {
namespace {

// The calls of a run in short: two runs that ask the same went the same way.
std::string wayOf(const std::vector<AskedCall>& calls) {
    std::string way;
    for (const AskedCall& one : calls)
        if (one.call.name.starts_with("RegOpenKey"))
            way += one.call.subject + '\\' + std::string(simwin::textOf(one.call.parameters[1])) + '\n';
    return way;
}

// Calls visit(station, calls) for the station and for it with each version of Windows.
template <class Visit>
void eachVersion(const simwin::Station& station, const Collector& collector, Visit visit) {
    const auto run = [&](const simwin::Station& one) {
        simwin::Machine machine(one);
        std::vector<AskedCall> calls;
        runOn(collector, machine, calls, Told::FactsAlone);
        visit(one, calls);
    };
    run(station);
    World world(station);
    for (Alternative& alternative :
         alternativesAt(world, memberPlace({"version"}), findCallRow("GetVersionExA")->samples)) {
        world.make(alternative.changes);
        run(*world.station());
        world.unmake(alternative.changes);
    }
}

// The station, and for each other way that a version of Windows leads one that has that version.
std::vector<simwin::Station> stationsByVersion(const simwin::Station& station, const Collector& collector) {
    std::vector<simwin::Station> all;
    std::set<std::string> ways;
    eachVersion(station, collector, [&](const simwin::Station& one, const std::vector<AskedCall>& calls) {
        if (ways.insert(wayOf(calls)).second)
            all.push_back(one);
    });
    return all;
}

// All that a place is made of.
std::string identityOf(const simwin::ObservedCall& call) {
    std::string identity = call.name + (call.succeeded ? '+' : '-') + call.subject;
    for (const simwin::Fact& fact : call.parameters) {
        identity += '\0';
        if (const auto* number = std::get_if<std::uint64_t>(&fact))
            identity += std::to_string(*number);
        else
            identity += simwin::textOf(fact);
    }
    return identity;
}

}  // namespace

void AskedPlaces::add(const std::vector<AskedCall>& calls) {
    for (const AskedCall& one : calls) {
        if (!m_calls.insert(identityOf(one.call)).second)
            continue;
        const CallRow* row = findCallRow(one.call.name);
        if (row == nullptr)
            continue;
        const Place place = row->place(one.call);
        if (place.kind != Place::Kind::None)
            m_places.try_emplace(place.id(), Asked{place, row->words});
    }
}

bool AskedPlaces::add(const AskedPlaces& other) {
    const std::size_t before = m_places.size();
    m_places.insert(other.m_places.begin(), other.m_places.end());
    return m_places.size() != before;
}

AskedPlaces askedOnce(const simwin::Station& station, const Collector& collector) {
    simwin::Machine machine(station);
    std::vector<AskedCall> calls;
    runOn(collector, machine, calls, Told::FactsAlone);
    AskedPlaces asked;
    asked.add(calls);
    return asked;
}

AskedPlaces askedByVersions(const simwin::Station& station, const Collector& collector) {
    AskedPlaces asked;
    eachVersion(station, collector,
                [&](const simwin::Station&, const std::vector<AskedCall>& calls) { asked.add(calls); });
    return asked;
}

AskedPlaces askedInBranches(const simwin::Station& station, const Collector& collector) {
    AskedPlaces asked;
    ExperimentOptions options;
    options.outputs = Outputs();
    options.otherRun = [&](const std::vector<AskedCall>& calls) { asked.add(calls); };
    options.everyWord = true;
    for (const simwin::Station& one : stationsByVersion(station, collector)) {
        World world(one);
        const Experiments experiments(world, collector, options);
        asked.add(experiments.calls());
        options.everyWord = false;  // settings are the same on every version
    }
    return asked;
}

}  // namespace kvstation
