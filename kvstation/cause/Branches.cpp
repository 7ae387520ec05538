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

using Version = std::optional<simwin::WindowsVersion>;

// That of the station, and one for each other way that a version of Windows leads.
std::vector<Version> versionsByWay(const simwin::Station& station, const Collector& collector) {
    std::vector<Version> all;
    std::set<std::string> ways;
    eachVersion(station, collector, [&](const simwin::Station& one, const std::vector<AskedCall>& calls) {
        if (ways.insert(wayOf(calls)).second)
            all.push_back(one.version);
    });
    return all;
}

// Of all that a place is made of.
class IdentityHash {
  public:
    void add(std::string_view bytes) {
        add(bytes.size());
        mix(std::hash<std::string_view>()(bytes));
    }
    void add(std::uint64_t number) { mix(number); }
    std::uint64_t value() const { return m_value; }

  private:
    void mix(std::uint64_t number) {
        constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
        m_value = (m_value ^ number) * kSpread;
        m_value ^= m_value >> 32;
    }

    std::uint64_t m_value = 0;
};

std::uint64_t identityOf(const simwin::ObservedCall& call) {
    IdentityHash identity;
    identity.add(call.name);
    identity.add(std::uint64_t{call.succeeded});
    identity.add(call.subject);
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

void AskedPlaces::add(const std::vector<AskedCall>& calls) {
    addNew(calls);
}

std::vector<Place> AskedPlaces::addNew(const std::vector<AskedCall>& calls) {
    std::vector<Place> fresh;
    for (const AskedCall& one : calls) {
        if (!m_calls.insert(identityOf(one.call)).second)
            continue;
        const CallRow* row = findCallRow(one.call.name);
        if (row == nullptr)
            continue;
        const Place place = row->place(one.call);
        if (place.kind != Place::Kind::None && m_places.try_emplace(place.id(), Asked{place, row->words}).second)
            fresh.push_back(place);
    }
    return fresh;
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

AskedPlaces askedInBranches(const simwin::Station& station, const Collector& collector, const FillIn& fillIn) {
    AskedPlaces asked;
    std::vector<Place> fresh;
    ExperimentOptions options;
    options.outputs = Outputs();
    options.otherRun = [&](const std::vector<AskedCall>& calls) { fresh = asked.addNew(calls); };
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
