// Asks for this station's record and prints some of it.
#include <iostream>
#include <memory>

#include <kvcstat.h>

namespace {

// The library writes texts without their terminator: it is a zero of the cleared record.
std::unique_ptr<STATIONDATA> readStation() {
    auto station = std::make_unique<STATIONDATA>();
    GetStationData(reinterpret_cast<char*>(station.get()));
    return station;
}

}  // namespace

int main() {
    const auto station = readStation();
    if (station->szStation[0] == '\0') {
        std::cerr << "This station has no name.\n";
        return 1;
    }
    std::cout << "szStation: " << station->szStation << '\n'
              << "szOS: " << station->szOS << '\n'
              << "dwNumberOfProcessors: " << station->dwNumberOfProcessors << '\n';
}
