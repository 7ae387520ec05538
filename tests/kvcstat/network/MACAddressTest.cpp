// Hardware addresses by NetBIOS and ARP.
#include <cstdio>

#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using ::testing::ElementsAre;

class MACAddressTest : public kvtest::NetworkTest {
  protected:
    void DescribeLana(std::uint8_t number, simwin::OptionalText address) {
        station.network.netbios.push_back({number, std::move(address)});
    }
    void DescribeARP(std::string address, std::string physical) {
        station.network.arp.push_back({std::move(address), std::move(physical)});
    }
    // The answer, with what went to standard output.
    std::string AskARP(const char* address) {
        Make();
        machine->keepLog(true);
        std::fflush(stdout);
        ::testing::internal::CaptureStdout();
        const CString answer = network->GetARPMACAddress(address);
        std::fflush(stdout);
        output = ::testing::internal::GetCapturedStdout();
        return kvtest::Str(answer);
    }

    std::string output;
};

TEST_F(MACAddressTest, NetbiosAddressIsTwelveUpperCaseDigits) {
    DescribeLana(0, std::string("\x00\x0C\x29\xAB\xCD\xEF", 6));
    EXPECT_STREQ(Make().GetNetbiosMACAddress(), "000C29ABCDEF");
}

TEST_F(MACAddressTest, StationWithoutNetbiosIsUnknown) {
    EXPECT_STREQ(Make().GetNetbiosMACAddress(), "unknown");
}

TEST_F(MACAddressTest, FailedEnumerationMeansNoAdapter) {
    DescribeLana(0, std::string("\x00\x0C\x29\xAB\xCD\xEF", 6));
    station.fails = {{"Netbios", 0x34}};
    Make();
    machine->keepLog(true);
    EXPECT_STREQ(network->GetNetbiosMACAddress(), "unknown");
    EXPECT_EQ(CountCalls("Netbios"), 1u);
}

TEST_F(MACAddressTest, FirstAdapterThatAnswersWinsAndLaterOnesAreNotAsked) {
    DescribeLana(3, std::nullopt);
    DescribeLana(7, std::string("\x02\x00\x00\x00\x00\x07", 6));
    DescribeLana(9, std::string("\x02\x00\x00\x00\x00\x09", 6));
    Make();
    machine->keepLog(true);
    EXPECT_STREQ(network->GetNetbiosMACAddress(), "020000000007");
    // Enumeration (0x37), then reset (0x32) and status (0x33) of each.
    EXPECT_THAT(Asked("Netbios"), ElementsAre("command 55, lana 0, length 256", "command 50, lana 3, length 0",
                                              "command 51, lana 3, length 600", "command 50, lana 7, length 0",
                                              "command 51, lana 7, length 600"));
}

TEST_F(MACAddressTest, AsManyAdaptersAsTheBufferHoldsAreAsked) {
    for (unsigned number = 0; number < 255; ++number)
        DescribeLana(static_cast<std::uint8_t>(number), std::nullopt);
    station.network.netbios.back().address = std::string("\xFF\xFE\xFD\xFC\xFB\xFA", 6);
    EXPECT_STREQ(Make().GetNetbiosMACAddress(), "FFFEFDFCFBFA");
}

TEST_F(MACAddressTest, ARPAddressIsItsDigitsAndIsPrinted) {
    DescribeARP("10.0.0.5", std::string("\x00\x0C\x29\xAB\xCD\xEF", 6));
    EXPECT_EQ(AskARP("10.0.0.5"), "000C29ABCDEF");
    EXPECT_EQ(output, "MAC address 000C29ABCDEF\n");
    EXPECT_THAT(Asked("SendARP"), ElementsAre("10.0.0.5, 0"));  // from the address that Windows chooses
}

TEST_F(MACAddressTest, ARPAddressOfEightBytesIsSixteenDigits) {
    DescribeARP("10.0.0.5", "\x01\x02\x03\x04\x05\x06\x07\x08");
    EXPECT_EQ(AskARP("10.0.0.5"), "0102030405060708");
    EXPECT_EQ(output, "MAC address 0102030405060708\n");
}

TEST_F(MACAddressTest, ARPAddressLongerThanTheBufferIsCutToEightBytes) {
    DescribeARP("10.0.0.5", "\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C");
    EXPECT_EQ(AskARP("10.0.0.5"), "0102030405060708");
}

TEST_F(MACAddressTest, ShortARPAddressIsAsShort) {
    DescribeARP("10.0.0.5", "\xAB");
    EXPECT_EQ(AskARP("10.0.0.5"), "AB");
}

TEST_F(MACAddressTest, ARPAnswerOfNoBytesIsUnknownAndPrintsNothing) {
    DescribeARP("10.0.0.5", "");
    EXPECT_EQ(AskARP("10.0.0.5"), "unknown");
    EXPECT_EQ(output, "");
}

TEST_F(MACAddressTest, AddressThatNobodyAnswersForIsUnknownAndPrintsNothing) {
    EXPECT_EQ(AskARP("10.0.0.5"), "unknown");
    EXPECT_EQ(output, "");
}

TEST_F(MACAddressTest, TextThatIsNoAddressIsAskedForAsTheBroadcastAddress) {
    for (const char* text : {"10.0.0.5;10.0.0.6", "fe80::1", "station", "", "256.1.1.1"})
        EXPECT_EQ(AskARP(text), "unknown") << text;
    DescribeARP("255.255.255.255", "\x01\x02\x03\x04\x05\x06");
    EXPECT_EQ(AskARP("10.0.0.5;10.0.0.6"), "010203040506");
}

}  // namespace
