// A fixture for tests of the network collector.
#pragma once

#include <algorithm>

#include "kvcstat/network/NetworkInformation.h"
#include "tests/kvcstat/MachineTest.h"

namespace kvtest {

inline constexpr char kServicesKey[] = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\";

class NetworkTest : public MachineTest {
  protected:
    // A new collector on a machine that is started anew from `station`.
    CNetworkInformation& Make() {
        network.reset();
        Start();
        network = std::make_unique<CNetworkInformation>();
        return *network;
    }

    void DescribeVersion(std::uint32_t platformId, std::uint32_t major, std::uint32_t minor = 0) {
        station.version = simwin::WindowsVersion{platformId, major, minor, 1000, "", false};
    }
    void DescribeVariable(std::string name, std::string value) {
        station.environment.push_back({std::move(name), std::move(value)});
    }
    void DescribeText(std::string_view key, std::string_view name, std::string_view text) {
        station.registry.set(key, simwin::textValue(name, text));
    }
    // A client session of a MetaFrame server.
    void DescribeSession() {
        DescribeVersion(2, 5);
        DescribeVariable("CLIENTNAME", "Thin07");
        DescribeText(kCitrix, "ProductName", "Citrix MetaFrame XP");
    }

    std::vector<std::string> Trace() const {
        std::vector<std::string> lines;
        for (const simwin::TraceLine& line : machine->traceLines())
            lines.push_back(std::to_string(line.level) + " " + line.text);
        return lines;
    }
    // What was asked of one call, in order, as its log tells it.
    std::vector<std::string> Asked(std::string_view call) const {
        std::vector<std::string> arguments;
        for (const simwin::LoggedCall& logged : machine->log()) {
            if (logged.name == call)
                arguments.push_back(logged.arguments);
        }
        return arguments;
    }
    std::size_t CountCalls(std::string_view call) const { return Asked(call).size(); }

    std::unique_ptr<CNetworkInformation> network;
};

}  // namespace kvtest
