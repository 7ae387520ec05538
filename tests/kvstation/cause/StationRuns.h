// Described stations, by name, and what experiments on them tell.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "kvstation/cause/Causes.h"
#include "kvstation/collect/CallLog.h"
#include "kvstation/collect/Stage.h"
#include "kvstation/record/FieldTable.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/station/StationWriter.h"
#include "tests/stations/ExpectedStation.h"

namespace kvtest {

inline std::string stationFolder(const std::string& name) {
    return std::string(KV_STATIONS) + "/" + name;
}

inline simwin::Station stationNamed(const std::string& name) {
    return kvstation::readStationFolder(stationFolder(name));
}

// The content of its two files.
inline std::string filesOf(const simwin::Station& station) {
    return simwin::writeStation(station) + simwin::writeRegistry(station.registry);
}

inline std::string bytesOf(const kvstation::RecordBytes& record) {
    return {record.begin(), record.end()};
}

inline std::vector<kvstation::TimedCall> callsOf(const simwin::Station& station) {
    simwin::Machine machine(station);
    kvstation::CallLog log;
    machine.observe(&log);
    kvstation::collectOn(machine);
    return log.calls();
}

// The calls of a collection with their outcomes.
inline std::vector<std::string> questionsOf(const simwin::Station& station) {
    std::vector<std::string> names;
    for (const kvstation::TimedCall& call : callsOf(station))
        names.push_back(call.call.name + (call.call.succeeded ? "" : " failed"));
    return names;
}

// What gives and decides one field.
inline kvstation::FieldCauses causesOn(const simwin::Station& station, std::string_view name) {
    const std::size_t field = kvstation::findField(name);
    const kvstation::Collector collector;
    kvstation::ExperimentOptions options;
    options.outputs = kvstation::Outputs();
    options.outputs.set(field);
    kvstation::World world(station);
    const kvstation::Experiments experiments(world, collector, options);
    return kvstation::causesOf(world, collector, experiments, field);
}

// What would come in its place, one behind the other.
inline std::vector<kvstation::NextValue> nextOn(const simwin::Station& station, const kvstation::FieldCauses& causes) {
    return kvstation::nextValues(station, kvstation::Collector(), causes);
}

}  // namespace kvtest
