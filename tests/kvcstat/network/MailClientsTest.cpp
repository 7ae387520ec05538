// The mail clients that are registered with Windows.
#include "tests/kvcstat/network/NetworkTest.h"

namespace {

using kvtest::kMail;

class MailClientsTest : public kvtest::NetworkTest {
  protected:
    void DescribeClient(const std::string& name) { station.registry.create(std::string(kMail) + "\\" + name); }
    void ExpectListed(int status, const std::string& clients) {
        EXPECT_EQ(Make().GetMailClients(), status);
        EXPECT_EQ(kvtest::Str(network->m_cMailClient), clients);
        ExpectEverythingClosed();
    }
};

TEST_F(MailClientsTest, ClientsStandInTheirOrderAndTheDefaultIsNotRead) {
    DescribeText(kMail, "", "Windows Mail");
    for (const char* name : {"Microsoft Outlook", "Outlook Express", "Windows Mail"})
        DescribeClient(name);
    ExpectListed(0, "Microsoft Outlook;Outlook Express;Windows Mail");
}

TEST_F(MailClientsTest, StationWithoutTheKeyHasNone) {
    ExpectListed(-1, "");
    station.registry.create(kMail);
    ExpectListed(0, "");
}

TEST_F(MailClientsTest, NamesOf254CharactersFitAndALongerOneEndsTheWalk) {
    DescribeClient(std::string(254, 'm'));
    DescribeClient("Eudora");
    ExpectListed(0, std::string(254, 'm') + ";Eudora");
    DescribeClient(std::string(255, 'x'));
    DescribeClient("Pegasus");
    ExpectListed(0, std::string(254, 'm') + ";Eudora");
}

TEST_F(MailClientsTest, KeyThatCannotBeOpenedMeansNone) {
    DescribeClient("Eudora");
    station.deniedKeys = {kMail};
    ExpectListed(-1, "");
}

}  // namespace
