// The network adapters and their drivers.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using namespace std::string_literals;

constexpr char kCards[] = "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\NetworkCards\\";
constexpr char kRoot[] = "HKEY_LOCAL_MACHINE\\Enum\\Root\\";
constexpr char kISAPNP[] = "HKEY_LOCAL_MACHINE\\Enum\\ISAPNP\\";

class NetworkAdaptersTest : public kvtest::NetworkTest {
  protected:
    void DescribeDevice(const std::string& instance, std::string_view deviceClass, std::string_view description,
                        std::string_view driver = "") {
        DescribeText(instance, "Class", deviceClass);
        if (!description.empty())
            DescribeText(instance, "DeviceDesc", description);
        if (!driver.empty())
            DescribeText(instance, "Driver", driver);
    }
    void DescribeDriver(const std::string& driver, std::string_view description) {
        DescribeText(kvtest::kServicesKey + "Class\\"s + driver, "DriverDesc", description);
    }
    void ExpectListed(const char* adapters, const char* drivers) {
        Make().GetNetworkAdapters();
        EXPECT_STREQ(network->m_cNetworkAdapters, adapters);
        EXPECT_STREQ(network->m_cNetworkDrivers, drivers);
        ExpectEverythingClosed();
    }
};

TEST_F(NetworkAdaptersTest, CardsOfNTAreListedByTheirDescriptions) {
    DescribeVersion(2, 5, 1);
    DescribeText(kCards + "8"s, "Description", "AMD PCNET PCI Ethernet Adapter");
    DescribeText(kCards + "11"s, "Description", "Intel(R) PRO/1000 MT");
    ExpectListed("AMD PCNET PCI Ethernet Adapter;Intel(R) PRO/1000 MT", "");
    EXPECT_EQ(network->GetNetworkAdapters(), 0);
}

TEST_F(NetworkAdaptersTest, CardWithoutADescriptionIsAnEmptyItem) {
    DescribeVersion(2, 4);
    DescribeText(kCards + "1"s, "Description", "First");
    station.registry.create(kCards + "2"s);
    DescribeText(kCards + "3"s, "Description", "Third");
    ExpectListed("First;;Third", "");
}

TEST_F(NetworkAdaptersTest, DevicesOfWindows9xAreListedWithTheirDrivers) {
    DescribeVersion(1, 4, 10);
    DescribeDevice(kRoot + "NET\\0000"s, "Net", "Dial-Up Adapter", "Net\\0000");
    DescribeDevice(kISAPNP + "TCM5095\\1"s, "NET", "3Com EtherLink III", "Net\\0001");
    DescribeDriver("Net\\0000", "PPP driver");
    DescribeDriver("Net\\0001", "3C509 driver");
    ExpectListed("Dial-Up Adapter;3Com EtherLink III", "PPP driver;3C509 driver");
    EXPECT_EQ(network->GetNetworkAdapters(), 0);
}

TEST_F(NetworkAdaptersTest, CardOfWindows9xUnderPCIIsNotListed) {
    DescribeVersion(1, 4, 10);
    DescribeDevice("HKEY_LOCAL_MACHINE\\Enum\\PCI\\VEN_10EC\\BUS_00", "Net", "Realtek RTL8029", "Net\\0000");
    DescribeDriver("Net\\0000", "RTL8029 driver");
    ExpectListed("", "");
}

TEST_F(NetworkAdaptersTest, DriverWithoutADescriptionGoesByTheDevices) {
    DescribeVersion(1, 4, 0);
    DescribeDevice(kRoot + "NET\\0000"s, "net", "Dial-Up Adapter", "Net\\0000");
    DescribeDevice(kRoot + "NET\\0001"s, "net", "Loopback");
    ExpectListed("Dial-Up Adapter;Loopback", "Dial-Up Adapter;Loopback");
}

TEST_F(NetworkAdaptersTest, DeviceWithoutADescriptionIsAnEmptyItem) {
    DescribeVersion(1, 4, 0);
    DescribeDevice(kRoot + "NET\\0000"s, "net", "Dial-Up Adapter", "Net\\0000");
    DescribeDevice(kRoot + "NET\\0001"s, "net", "", "Net\\0001");
    DescribeDriver("Net\\0001", "Some driver");
    ExpectListed("Dial-Up Adapter;", "Dial-Up Adapter;Some driver");
}

TEST_F(NetworkAdaptersTest, DevicesOfOtherClassesOrNoneAreNotListed) {
    DescribeVersion(1, 4, 10);
    DescribeDevice(kRoot + "PRINTER\\0000"s, "Printer", "HP LaserJet", "Printer\\0000");
    DescribeDevice(kRoot + "NET\\0000"s, "NetClient", "Client for Microsoft Networks", "NetClient\\0000");
    DescribeText(kRoot + "NET\\0001"s, "DeviceDesc", "Nameless");
    ExpectListed("", "");
}

TEST_F(NetworkAdaptersTest, DeviceWithoutAClassDoesNotInheritTheOneBeforeIt) {
    DescribeVersion(1, 4, 10);
    DescribeDevice(kRoot + "NET\\0000"s, "Net", "Dial-Up Adapter");
    DescribeText(kRoot + "NET\\0001"s, "DeviceDesc", "Nameless");
    ExpectListed("Dial-Up Adapter", "Dial-Up Adapter");
}

TEST_F(NetworkAdaptersTest, KeysThatCannotBeOpenedEndTheirWalkQuietly) {
    DescribeVersion(1, 4, 10);
    DescribeDevice(kRoot + "NET\\0000"s, "Net", "Dial-Up Adapter");
    DescribeDevice(kISAPNP + "TCM5095\\1"s, "Net", "3Com EtherLink III");
    station.deniedKeys = {"HKEY_LOCAL_MACHINE\\Enum\\Root\\NET"};
    ExpectListed("3Com EtherLink III", "3Com EtherLink III");
    EXPECT_EQ(network->GetEnumNetDevices(nullptr), -1);
    station.deniedKeys = {"HKEY_LOCAL_MACHINE\\Enum\\Root", "HKEY_LOCAL_MACHINE\\Enum\\ISAPNP\\TCM5095\\1"};
    ExpectListed("", "");
}

TEST_F(NetworkAdaptersTest, Windows9xDoesNotListTheCardsOfNTThatAreThereToo) {
    DescribeVersion(1, 4, 10);
    DescribeDevice(kRoot + "NET\\0000"s, "Net", "Dial-Up Adapter");
    DescribeText(kCards + "8"s, "Description", "AMD PCNET PCI Ethernet Adapter");
    ExpectListed("Dial-Up Adapter", "Dial-Up Adapter");
}

TEST_F(NetworkAdaptersTest, OtherPlatformsListNothing) {
    DescribeText(kCards + "8"s, "Description", "AMD PCNET PCI Ethernet Adapter");
    DescribeVersion(0, 3, 10);
    ExpectListed("", "");
    EXPECT_EQ(network->GetNetworkAdapters(), 0);
    station.version.reset();
    ExpectListed("", "");
}

}  // namespace
