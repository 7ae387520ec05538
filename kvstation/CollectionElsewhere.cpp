#include "kvstation/Collection.h"
#include "kvstation/Errors.h"

namespace kvstation {

RecordBytes collectHere(std::chrono::seconds, std::string*) {
    throw Failure("show needs Windows; 'kvstation simulate STATION' shows a described station here");
}

std::optional<int> runInChild(const std::vector<std::string>&, std::chrono::seconds) {
    return std::nullopt;
}

}  // namespace kvstation
