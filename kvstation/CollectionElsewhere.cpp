#include "kvstation/Collection.h"
#include "kvstation/Errors.h"

namespace kvstation {

RecordBytes collectHere(std::chrono::seconds, std::string*) {
    throw Failure("show needs Windows; 'kvstation simulate STATION' shows a described station here");
}

}  // namespace kvstation
