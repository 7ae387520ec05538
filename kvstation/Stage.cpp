#include "kvstation/Stage.h"

#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/WatchedRun.h"
#include "simwin/StationReader.h"

namespace kvstation {

simwin::Station readStationFolder(const std::string& folder) {
    if (!isFolder(folder))
        throw Failure(folder + " is no folder; a station is a folder with registry.reg and station.json");
    return simwin::readStation(pathOf(folder));
}

WatchedRun watchRun(const std::string& folder) {
    CallLog log;
    WatchedRun run;
    if (folder.empty()) {
        run.record = collectHereObserved(log);
    } else {
        simwin::Machine machine(readStationFolder(folder));
        machine.observe(&log);
        run.record = collectOn(machine);
    }
    run.calls = log.calls();
    return run;
}

}  // namespace kvstation
