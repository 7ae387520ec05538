// Files and the versions that they tell.
#include <algorithm>
#include <cstring>

#include "framework/Windows.h"
#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/StationDraft.h"
#include "simwin/machine/VersionResource.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

constexpr std::string_view kFileSamples = R"([{}])";
constexpr std::string_view kVersionSamples = R"([{"version": "7.8.9.1"}])";

// A station describes what is on drives alone.
bool isOnDrive(std::string_view path) {
    return path.size() > 3 && path[1] == ':' && path[2] == '\\';
}

Place placeOfFile(const ObservedCall& call) {
    const std::string path = utf8At(call, 0);
    return isOnDrive(path) ? memberPlace({"files", path}) : Place{};
}

// Null for what can be no file's path.
simwin::File* fileOf(StationDraft& draft, const std::string& path) {
    if (!isOnDrive(path) || simwin::endsWithCharacter(path, '\\'))
        return nullptr;
    for (simwin::File& file : draft.station.files)
        if (simwin::equalNoCase(file.path, path))
            return &file;
    return &draft.station.files.emplace_back(simwin::File{.path = path, .version = {}, .resource = {}});
}

// Each part of a path is looked for below the parts before it, which are known by then.
void keepFound(StationDraft& draft, const ObservedCall& call) {
    const std::string asked = textAt(call, 0);
    const std::string parent(simwin::withoutLastPiece(asked));
    if (!call.succeeded || parent.empty())
        return;
    const auto data = structureAt<WIN32_FIND_DATAA>(call, 1);
    const auto known = draft.realPaths.find(parent);
    const std::string real = (known != draft.realPaths.end() ? known->second : parent) + "\\" +
                             std::string(data.cFileName, strnlen(data.cFileName, sizeof data.cFileName));
    draft.realPaths[asked] = real;
    std::erase_if(draft.station.files, [&](const simwin::File& file) {
        return file.path == parent || (known != draft.realPaths.end() && file.path == known->second);
    });
    fileOf(draft, real);
}

void keepExisting(StationDraft& draft, const ObservedCall& call) {
    if (call.succeeded)
        fileOf(draft, textAt(call, 0));
}

// One that tells no version, until it has told one.
void keepResource(StationDraft& draft, const ObservedCall& call) {
    draft.versionedFile = textAt(call, 0);
    if (simwin::File* file = call.succeeded ? fileOf(draft, draft.versionedFile) : nullptr)
        file->resource = std::string(1, '\0');
}

void keepFileVersion(StationDraft& draft, const ObservedCall& call) {
    const auto version = simwin::versionIn(simwin::textOf(call.parameters[2]));
    simwin::File* file = call.succeeded && version ? fileOf(draft, draft.versionedFile) : nullptr;
    if (file == nullptr)
        return;
    file->resource.reset();
    file->version = version;
}

// Out of a version resource, whose fixed part begins with a signature.
Answer tellFileVersion(const ObservedCall& call) {
    constexpr std::string_view kSignature("\xBD\x04\xEF\xFE", 4);
    const std::string_view block = simwin::textOf(call.parameters[3]);
    const std::size_t place = std::min(block.find(kSignature), block.size());
    const auto version = simwin::versionIn(block.substr(place));
    return wordsAnswer(version ? simwin::versionText(*version) : "no version");
}

}  // namespace

KV_CALL(FindFirstFileA, asks("whether the file is there", placeOfFile, kFileSamples), kTellsNothing, keepFound);
KV_CALL(FindClose, kClearance, kTellsNothing, kKeepsNothing);
KV_CALL(_access, asks("whether the file is there", placeOfFile, kFileSamples), kTellsNothing, keepExisting);
KV_CALL(GetFileVersionInfoSizeA, asks("whether the file tells a version", placeOfFile, kVersionSamples), kTellsNothing,
        keepResource);
KV_CALL(GetFileVersionInfoA, asks("the file's version", placeOfFile, kVersionSamples), tellFileVersion, kKeepsNothing);
KV_CALL(VerQueryValueA, kOwnWork, kTellsNothing, keepFileVersion);

}  // namespace kvstation
