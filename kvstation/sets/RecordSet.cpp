#include "kvstation/sets/RecordSet.h"

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/sets/FolderSet.h"
#include "kvstation/sets/RowFileSet.h"
#ifndef _WIN32
#include "kvstation/sets/RowDatabase.h"
#endif

namespace kvstation {
namespace {

#ifdef _WIN32
bool isDatabase(const std::string&) {
    return false;
}
#endif

std::unique_ptr<RecordSet> folderSet(const std::string& folder, const SourceReading& reading) {
    auto set = std::make_unique<FolderSet>();
    set->add(sourcesIn(folder, SourceKind::Stations), reading.station);
    set->add(sourcesIn(folder, SourceKind::Records), reading.record);
    if (set->names().empty() && set->wrong().empty())
        throw Failure(folder + " holds neither a station nor a record");
    return set;
}

}  // namespace

bool isRecordSet(const std::string& path) {
    if (isFolder(path))
        return !isStationFolder(path);
    std::error_code ignored;  // a pipe would wait for its writer
    return std::filesystem::is_regular_file(pathOf(path), ignored) && (isDatabase(path) || isRowFile(path));
}

std::unique_ptr<RecordSet> openRecordSet(const std::string& path, const SourceReading& reading) {
    if (isFolder(path))
        return folderSet(path, reading);
#ifndef _WIN32
    if (isDatabase(path))
        return std::make_unique<DatabaseSet>(path);
#endif
    return std::make_unique<RowFileSet>(path);
}

std::unique_ptr<RecordSet> stationSet(const Places& places, const std::function<Record(const Source&)>& record) {
    auto set = std::make_unique<FolderSet>();
    set->add(sourcesOf(places, SourceKind::Stations), record);
    return set;
}

}  // namespace kvstation
