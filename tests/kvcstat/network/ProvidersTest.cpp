// The network providers and the protocols bound to them.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using namespace std::string_literals;

constexpr char kOrderNT[] = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\NetWorkProvider\\Order";
constexpr char kOrder9x[] = "HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\control\\NetworkProvider\\Order";
constexpr char kDevicesEnum[] = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\";

class ProvidersTest : public kvtest::NetworkTest {
  protected:
    ProvidersTest() { DescribeVersion(2, 5, 1); }

    void DescribeOrder(std::string_view order) { DescribeText(kOrderNT, "ProviderOrder", order); }
    void DescribeProvider(const std::string& service, std::string_view name) {
        DescribeText(kvtest::kServicesKey + service + "\\NetWorkProvider", "Name", name);
    }
    void DescribeBindings(const std::string& service, const std::vector<std::string>& bindings) {
        station.registry.set(kvtest::kServicesKey + service + "\\Linkage", simwin::multiTextValue("Bind", bindings));
    }
    void DescribeBindingBytes(const std::string& service, simwin::RegistryType type, std::string bytes) {
        station.registry.set(kvtest::kServicesKey + service + "\\Linkage",
                             {"Bind", static_cast<std::uint32_t>(type), std::move(bytes)});
    }
    // A service with a device of its own, which has the description.
    void DescribeDevice(const std::string& service, std::string_view description) {
        const std::string instance = "Root\\LEGACY_" + service + "\\0000";
        DescribeText(kvtest::kServicesKey + service + "\\Enum", "0", instance);
        DescribeText(kDevicesEnum + instance, "DeviceDesc", description);
    }

    std::vector<std::string> Providers() const {
        std::vector<std::string> names;
        for (POSITION place = network->m_lstProviders.GetHeadPosition(); place != nullptr;)
            names.push_back(kvtest::Str(network->m_lstProviders.GetNext(place)));
        return names;
    }
    void ExpectProviders(int status, const std::vector<std::string>& names, const char* joined) {
        EXPECT_EQ(Make().GetNetworkProviders(), status);
        EXPECT_EQ(Providers(), names);
        EXPECT_STREQ(network->m_cProviders, joined);
        ExpectEverythingClosed();
    }
    void ExpectProtocols(int status, const char* protocols) {
        EXPECT_EQ(Make().AddProviderProtocols("LanmanWorkstation"), status);
        EXPECT_STREQ(network->m_cProtocols, protocols);
        ExpectEverythingClosed();
    }
};

TEST_F(ProvidersTest, ProvidersOfNTStandInTheirOrder) {
    DescribeOrder("LanmanWorkstation,RDPNP,webclient");
    DescribeProvider("webclient", "Web Client Network");
    DescribeProvider("RDPNP", "Microsoft Terminal Services");
    DescribeProvider("LanmanWorkstation", "Microsoft Windows Network");
    ExpectProviders(-1, {"Microsoft Windows Network", "Microsoft Terminal Services", "Web Client Network"},
                    "Microsoft Windows Network;Microsoft Terminal Services;Web Client Network");
}

TEST_F(ProvidersTest, ProtocolsOfAllProvidersAreListedOnce) {
    DescribeOrder("LanmanWorkstation,RDPNP,webclient");
    DescribeBindings("LanmanWorkstation", {"\\Device\\NetBT_Tcpip_{A}", "\\Device\\Nbf_{A}"});
    DescribeBindings("RDPNP", {"\\Device\\NetBT_Tcpip_{A}", "\\Device\\NwlnkIpx_{A}"});
    DescribeBindings("webclient", {"\\Device\\NwlnkIpx_{B}", "\\Device\\Nbf_{B}"});
    DescribeDevice("NetBT", "NetBios over Tcpip");
    DescribeDevice("Nbf", "NetBEUI Protocol");
    DescribeDevice("NwlnkIpx", "IPX Protocol");
    EXPECT_EQ(Make().GetNetworkProviders(), 0);
    EXPECT_STREQ(network->m_cProtocols, "NetBios over Tcpip;NetBEUI Protocol;IPX Protocol");
    EXPECT_STREQ(network->m_cProviders, "");
}

TEST_F(ProvidersTest, DescriptionsAreTheSameOnlyWhenTheyAreWhollyAndExactlySo) {
    DescribeOrder("A,B");
    DescribeBindings("A", {"\\Device\\One_", "\\Device\\Two_", "\\Device\\Three_"});
    DescribeBindings("B", {"\\Device\\Four_", "\\Device\\Five_", "\\Device\\Six_"});
    DescribeDevice("One", "@nettcpip.inf,%tcpip%;TCP/IP Protocol");
    DescribeDevice("Two", "TCP/IP Protocol");
    DescribeDevice("Three", "NetBEUI");
    DescribeDevice("Four", "netbeui");
    DescribeDevice("Five", "Net");
    DescribeDevice("Six", "NetBEUI");
    Make().GetNetworkProviders();
    EXPECT_STREQ(network->m_cProtocols, "@nettcpip.inf,%tcpip%;TCP/IP Protocol;TCP/IP Protocol;NetBEUI;netbeui;Net");
}

TEST_F(ProvidersTest, StatusIsThatOfTheLastProvidersLastRead) {
    DescribeOrder("A,B");
    DescribeBindings("A", {"\\Device\\NetBT_"});
    DescribeDevice("NetBT", "NetBios over Tcpip");
    EXPECT_EQ(Make().GetNetworkProviders(), -1);
    DescribeBindings("B", {"\\Device\\NetBT_"});
    EXPECT_EQ(Make().GetNetworkProviders(), 0);
    DescribeBindings("B", {"\\Device\\NetBT_", "\\Device\\Missing_"});
    EXPECT_EQ(Make().GetNetworkProviders(), -1);
}

TEST_F(ProvidersTest, ServiceWithoutAProviderKeyIsLeftOutOfBoth) {
    DescribeOrder("LanmanWorkstation,Missing,webclient");
    DescribeProvider("LanmanWorkstation", "Microsoft Windows Network");
    DescribeProvider("webclient", "Web Client Network");
    ExpectProviders(-1, {"Microsoft Windows Network", "Web Client Network"},
                    "Microsoft Windows Network;Web Client Network");
}

TEST_F(ProvidersTest, ProviderWithoutANameIsAnEmptyItem) {
    DescribeOrder("A,B,C");
    DescribeProvider("A", "First");
    station.registry.create(kvtest::kServicesKey + "B\\NetWorkProvider"s);
    DescribeProvider("C", "Third");
    ExpectProviders(-1, {"First", "", "Third"}, "First;;Third");
}

TEST_F(ProvidersTest, EmptyItemsOfTheOrderVanishAndBlanksStay) {
    DescribeProvider("LanmanWorkstation", "Microsoft Windows Network");
    DescribeProvider("RDPNP", "Microsoft Terminal Services");
    DescribeProvider(" RDPNP", "With a blank");
    const struct {
        const char* order;
        const char* joined;
    } rows[] = {
        {",,LanmanWorkstation,,,RDPNP,", "Microsoft Windows Network;Microsoft Terminal Services"},
        {"LanmanWorkstation, RDPNP", "Microsoft Windows Network;With a blank"},
        {"LanmanWorkstation ,RDPNP", "Microsoft Terminal Services"},
        {"RDPNP", "Microsoft Terminal Services"},
        {",", ""},
        {" ", ""},
        {"", ""},
        {"RDPNP,RDPNP", "Microsoft Terminal Services;Microsoft Terminal Services"},
    };
    for (const auto& row : rows) {
        DescribeOrder(row.order);
        Make().GetNetworkProviders();
        EXPECT_STREQ(network->m_cProviders, row.joined) << row.order;
        ExpectEverythingClosed();
    }
}

TEST_F(ProvidersTest, OrderWithoutItemsHasTheStatusOfNone) {
    DescribeOrder(",");
    ExpectProviders(-1, {}, "");
}

TEST_F(ProvidersTest, OrderOfAnyLengthIsRead) {
    DescribeProvider("webclient", "Web Client Network");
    DescribeOrder(std::string(70000, 'x') + "," + std::string(70000, ',') + "webclient");
    ExpectProviders(-1, {"Web Client Network"}, "Web Client Network");
}

TEST_F(ProvidersTest, WithoutAnOrderThereAreNoProviders) {
    ExpectProviders(-1, {}, "");
    station.registry.set(kOrderNT, simwin::dwordValue("ProviderOrder", 1));
    ExpectProviders(-1, {}, "");
}

TEST_F(ProvidersTest, SecondCollectionEmptiesTheListsAndRepeatsTheNames) {
    DescribeOrder("LanmanWorkstation");
    DescribeProvider("LanmanWorkstation", "Microsoft Windows Network");
    DescribeBindings("LanmanWorkstation", {"\\Device\\NetBT_", "\\Device\\Nbf_"});
    DescribeDevice("NetBT", "NetBios over Tcpip");
    DescribeDevice("Nbf", "NetBEUI Protocol");
    Make().GetNetworkProviders();
    network->GetNetworkProviders();
    EXPECT_THAT(Providers(), ::testing::ElementsAre("Microsoft Windows Network"));
    EXPECT_STREQ(network->m_cProviders, "Microsoft Windows Network;Microsoft Windows Network");
    EXPECT_STREQ(network->m_cProtocols, "NetBios over Tcpip;NetBEUI Protocol;NetBios over Tcpip;NetBEUI Protocol");
}

TEST_F(ProvidersTest, ProvidersOfWindows9xAreTheValueNamesOfTheirOrder) {
    DescribeVersion(1, 4, 10);
    DescribeText(kOrder9x, "MSNP32", "");
    station.registry.set(kOrder9x, simwin::dwordValue("Missing", 2));
    DescribeText(kOrder9x, "NWNP32", "ignored");
    DescribeProvider("MSNP32", "Microsoft Network");
    DescribeProvider("NWNP32", "NetWare Network");
    DescribeBindings("MSNP32", {"\\Device\\NetBT_"});
    DescribeDevice("NetBT", "NetBios over Tcpip");
    ExpectProviders(0, {"Microsoft Network", "NetWare Network"}, "Microsoft Network;NetWare Network");
    EXPECT_STREQ(network->m_cProtocols, "");
}

TEST_F(ProvidersTest, StatusOnWindows9xIsThatOfTheLastProvider) {
    DescribeVersion(1, 4, 10);
    EXPECT_EQ(Make().GetNetworkProviders(), -1);
    station.registry.create(kOrder9x);
    EXPECT_EQ(Make().GetNetworkProviders(), -1);
    DescribeText(kOrder9x, "MSNP32", "");
    DescribeProvider("MSNP32", "Microsoft Network");
    EXPECT_EQ(Make().GetNetworkProviders(), 0);
    DescribeText(kOrder9x, "Missing", "");
    EXPECT_EQ(Make().GetNetworkProviders(), -1);
}

TEST_F(ProvidersTest, ValueNamesOf1023CharactersFitAndALongerOneEndsTheWalk) {
    DescribeVersion(1, 4, 10);
    DescribeText(kOrder9x, std::string(1023, 'n'), "");
    DescribeText(kOrder9x, "MSNP32", "");
    DescribeProvider(std::string(1023, 'n'), "Long");
    DescribeProvider("MSNP32", "Microsoft Network");
    ExpectProviders(0, {"Long", "Microsoft Network"}, "Long;Microsoft Network");

    DescribeText(kOrder9x, std::string(1024, 'm'), "");
    DescribeText(kOrder9x, "NWNP32", "");
    DescribeProvider("NWNP32", "NetWare Network");
    ExpectProviders(0, {"Long", "Microsoft Network"}, "Long;Microsoft Network");
}

TEST_F(ProvidersTest, OtherPlatformsHaveNoProviders) {
    DescribeOrder("LanmanWorkstation");
    DescribeProvider("LanmanWorkstation", "Microsoft Windows Network");
    DescribeVersion(0, 3, 10);
    ExpectProviders(-1, {}, "");
    station.version.reset();
    ExpectProviders(-1, {}, "");
}

TEST_F(ProvidersTest, SecondPieceOfABindingIsTheServiceBehindIt) {
    DescribeDevice("NetBT", "NetBios over Tcpip");
    const struct {
        const char* binding;
        int status;
        const char* protocols;
    } rows[] = {
        {"\\Device\\NetBT_Tcpip_{A}", 0, "NetBios over Tcpip"},
        {"Device_NetBT", 0, "NetBios over Tcpip"},
        {"__x\\\\_NetBT_\\y", 0, "NetBios over Tcpip"},
        {"\\Device\\netbt_Tcpip", 0, "NetBios over Tcpip"},
        {"\\Device\\Other_Tcpip", -1, ""},
        {"NetBT", 0, ""},  // no delimiter, no second piece: the last read is that of the bindings
        {"\\NetBT\\", 0, ""},
        {"\\_\\_", 0, ""},
        {"\\Device\\NetBT ", -1, ""},
    };
    for (const auto& row : rows) {
        DescribeBindings("LanmanWorkstation", {row.binding});
        ExpectProtocols(row.status, row.protocols);
    }
}

TEST_F(ProvidersTest, BindingsEndWithAnEmptyItemOrWithTheirData) {
    using simwin::RegistryType;
    DescribeDevice("NetBT", "NetBios over Tcpip");
    DescribeDevice("Nbf", "NetBEUI Protocol");
    const struct {
        RegistryType type;
        std::string bytes;
        int status;
        const char* protocols;
    } rows[] = {
        {RegistryType::MultiText, "\\a\\NetBT\0\\a\\Nbf\0\0"s, 0, "NetBios over Tcpip;NetBEUI Protocol"},
        {RegistryType::MultiText, "\\a\\NetBT\0\\a\\Nbf\0"s, 0, "NetBios over Tcpip;NetBEUI Protocol"},
        {RegistryType::MultiText, "\\a\\NetBT\0\\a\\Nbf"s, 0, "NetBios over Tcpip;NetBEUI Protocol"},
        {RegistryType::Binary, "\\a\\NetBT\0\\a\\Nbf"s, 0, "NetBios over Tcpip;NetBEUI Protocol"},
        {RegistryType::Text, "\\a\\NetBT"s, 0, "NetBios over Tcpip"},
        {RegistryType::MultiText, "\\a\\NetBT\0\0\\a\\Nbf\0\0"s, 0, "NetBios over Tcpip"},
        {RegistryType::MultiText, "\0\\a\\Nbf\0\0"s, 0, ""},
        {RegistryType::MultiText, ""s, 0, ""},
        {RegistryType::ExpandText, "\\a\\NetBT\0"s, -1, ""},
        {RegistryType::DWord, "\\a\\N"s, -1, ""},
    };
    for (const auto& row : rows) {
        DescribeBindingBytes("LanmanWorkstation", row.type, row.bytes);
        ExpectProtocols(row.status, row.protocols);
    }
}

TEST_F(ProvidersTest, ServiceWithoutBindingsHasNoProtocols) {
    ExpectProtocols(-1, "");
}

TEST_F(ProvidersTest, BoundServiceWithoutADeviceOrDescriptionIsSkipped) {
    DescribeBindings("LanmanWorkstation", {"\\a\\NoDevice", "\\a\\NoDescription", "\\a\\NetBT"});
    DescribeText(kvtest::kServicesKey + "NoDescription\\Enum"s, "0", "Root\\LEGACY_X\\0000");
    DescribeDevice("NetBT", "NetBios over Tcpip");
    ExpectProtocols(0, "NetBios over Tcpip");
}

TEST_F(ProvidersTest, NamesLongerThanAnyBufferAreLookedUpWhole) {
    const std::string service(5000, 's');
    DescribeBindings("LanmanWorkstation", {"\\a\\" + service});
    DescribeText(kvtest::kServicesKey + service + "\\Enum", "0", "Root\\X\\0000");
    DescribeText(kDevicesEnum + "Root\\X\\0000"s, "DeviceDesc", std::string(5000, 'd'));
    ExpectProtocols(0, std::string(5000, 'd').c_str());
}

}  // namespace
