// Drives.
#include "framework/Windows.h"
#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/StationDraft.h"
#include "simwin/station/StorageForms.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

constexpr std::string_view kDrives = R"([
  {"type": "removable"}, {"type": "cdrom"}, {"type": "remote"}, {"type": "ramdisk"},
  {"type": "fixed", "label": "ANOTHER7", "fileSystem": "FAT", "total": 1073741824, "free": 536870912}])";

Place placeOfDrive(const ObservedCall& call) {
    const std::string root = utf8At(call, 0);
    return root.empty() ? Place{} : memberPlace({"drives", std::string(1, simwin::upperAscii(root.front()))});
}

// Null for the current drive, which is none of a station's.
simwin::Drive* driveOf(StationDraft& draft, const ObservedCall& call) {
    const std::string root = textAt(call, 0);
    return root.empty() ? nullptr : &draft.station.drives[simwin::upperAscii(root[0])];
}

Answer tellType(const ObservedCall& call) {
    const auto type = static_cast<std::uint32_t>(simwin::numberOf(call.result));
    if (type == DRIVE_UNKNOWN)
        return wordsAnswer("unknown");
    if (type == DRIVE_NO_ROOT_DIR)
        return wordsAnswer("no drive");
    const std::string_view word = simwin::driveTypeWord(type);
    return wordsAnswer(word.empty() ? std::to_string(type) : std::string(word));
}

void keepType(StationDraft& draft, const ObservedCall& call) {
    const auto type = static_cast<std::uint32_t>(simwin::numberOf(call.result));
    if (simwin::Drive* drive = type != DRIVE_NO_ROOT_DIR ? driveOf(draft, call) : nullptr)
        drive->type = type;
}

Answer tellVolume(const ObservedCall& call) {
    return wordsAnswer("\"" + utf8At(call, 1) + "\", " + utf8At(call, 6));
}

void keepVolume(StationDraft& draft, const ObservedCall& call) {
    simwin::Drive* drive = call.succeeded ? driveOf(draft, call) : nullptr;
    if (drive == nullptr)
        return;
    drive->label = textAt(call, 1);
    drive->serial = static_cast<std::uint32_t>(numberAt(call, 3));
    drive->fileSystem = textAt(call, 6);
}

Answer tellSpace(const ObservedCall& call) {
    return wordsAnswer(std::to_string(numberAt(call, 2)) + " bytes, " + std::to_string(numberAt(call, 1)) + " free");
}

// All that is free is for the user where nothing else was asked for.
void keepSpace(StationDraft& draft, const ObservedCall& call) {
    simwin::Drive* drive = call.succeeded ? driveOf(draft, call) : nullptr;
    if (drive == nullptr)
        return;
    drive->total = numberAt(call, 2);
    drive->free = numberAt(call, 1);
    if (call.parameters[3].index() != 0)
        drive->totalFree = numberAt(call, 3);
}

void keepClusters(StationDraft& draft, const ObservedCall& call) {
    const auto number = [&](std::size_t parameter) { return static_cast<std::uint32_t>(numberAt(call, parameter)); };
    if (simwin::Drive* drive = call.succeeded ? driveOf(draft, call) : nullptr)
        drive->clusters = simwin::Clusters{number(1), number(2), number(3), number(4)};
}

}  // namespace

KV_CALL(GetDriveTypeA, asks("the kind of the drive", placeOfDrive, kDrives), tellType, keepType);
KV_CALL(GetVolumeInformationA, asks("the drive's label and file system", placeOfDrive, kDrives), tellVolume,
        keepVolume);
KV_CALL(GetDiskFreeSpaceExA, asks("the drive's size and free space", placeOfDrive, kDrives), tellSpace, keepSpace);
KV_CALL(GetDiskFreeSpaceA, asks("the drive's size and free space", placeOfDrive, kDrives), kTellsNothing, keepClusters);

}  // namespace kvstation
