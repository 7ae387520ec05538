#include "kvstation/capture/StationFolder.h"

#include <system_error>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/station/StationWriter.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

void makeFolder(const std::string& folder) {
    if (const std::string wrong = checkFileName(folder); !wrong.empty())
        throw WrongUse("STATION: " + wrong);
    std::error_code error;
    std::filesystem::create_directories(pathOf(folder), error);
    if (!isFolder(folder))
        throw Failure(folder + ": the folder cannot be made" + (error ? ": " + error.message() : ""));
}

void refuseStation(const std::string& folder) {
    for (const char* name : {"/registry.reg", "/station.json"})
        if (std::error_code error; std::filesystem::exists(pathOf(folder + name), error))
            throw Failure(folder + name + " is there already; name a folder that holds no station");
}

}  // namespace

void writeStationFolder(const simwin::Station& station, const std::string& folder) {
    const simwin::CodePageScope scope(station.codePages.ansi);
    makeFolder(folder);
    refuseStation(folder);
    writeFile(folder + "/registry.reg", simwin::writeRegistry(station.registry));
    writeFile(folder + "/station.json", simwin::writeStation(station));
}

}  // namespace kvstation
