#include "kvstation/calls/Answer.h"

#include <gmock/gmock.h>

#include "kvstation/calls/CallError.h"
#include "kvstation/calls/CallRows.h"

namespace kvtest {
namespace {

using kvstation::answerOf;
using kvstation::shown;
using simwin::ObservedCall;
using testing::ElementsAre;

ObservedCall registryAnswer(std::uint64_t type, std::string bytes) {
    const std::uint64_t size = bytes.size();
    return {.name = "RegQueryValueExA",
            .arguments = {},
            .answer = {},
            .subject = {},
            .succeeded = true,
            .parameters = {std::uint64_t{1}, std::string("Name"), {}, type, std::move(bytes), size}};
}

TEST(Answer, OfAListIsItsTexts) {
    const kvstation::Answer list = answerOf(registryAnswer(7, std::string("one\0two\0\0", 9)));
    EXPECT_THAT(list.items, ElementsAre("one", "two"));
    EXPECT_EQ(shown(list), "\"one\", \"two\"");
    EXPECT_EQ(shown(answerOf(registryAnswer(7, std::string(1, '\0')))), "an empty list");
}

TEST(Answer, OfATextIsInUtf8AndEndsAtItsNul) {
    EXPECT_EQ(shown(answerOf(registryAnswer(1, std::string("B\xFCro\0behind", 11)))), "\"B\xC3\xBCro\"");
    EXPECT_EQ(shown(answerOf(registryAnswer(1, ""))), "\"\"");
}

TEST(Answer, OfANumberIsDecimal) {
    EXPECT_EQ(shown(answerOf(registryAnswer(4, std::string("\x02\x01\0\0", 4)))), "258");
}

TEST(Answer, OfBinaryDataThatIsATextIsThatText) {
    EXPECT_EQ(shown(answerOf(registryAnswer(3, std::string("X\0T\0\0\0", 6)))), "\"XT\"");
    EXPECT_EQ(shown(answerOf(registryAnswer(3, "narrow"))), "\"narrow\"");
    EXPECT_EQ(shown(answerOf(registryAnswer(3, std::string("\x01\xFF\x02", 3)))), "01 ff 02");
    EXPECT_EQ(shown(answerOf(registryAnswer(3, ""))), "no bytes");
}

TEST(Answer, OfTheKeyboardStandsWhereItsNumberDoes) {
    const auto placeAsked = [](std::uint64_t number) {
        ObservedCall call{
            .name = "GetKeyboardType", .arguments = {}, .answer = {}, .subject = {}, .parameters = {number}};
        return kvstation::nameOf(kvstation::calls::GetKeyboardType.asks.place(call));
    };
    EXPECT_EQ(placeAsked(0), "keyboard.type");
    EXPECT_EQ(placeAsked(1), "keyboard.subType");
    EXPECT_EQ(placeAsked(2), "") << "no station describes it";
    EXPECT_EQ(placeAsked(0xFFFFFFFF), "");
}

TEST(Answer, OfAFailureIsTheErrorByItsName) {
    ObservedCall call{.name = "SendARP", .arguments = {}, .answer = {}, .subject = {}, .succeeded = false, .error = 67};
    EXPECT_EQ(shown(*kvstation::errorOf(call)), "67 ERROR_BAD_NET_NAME");
    call.error = 2138;
    EXPECT_EQ(shown(*kvstation::errorOf(call)), "2138 NERR_WkstaNotStarted");
    call.error = 77777;
    EXPECT_EQ(shown(*kvstation::errorOf(call)), "77777");
    call.error = 0xC0000022;
    EXPECT_EQ(shown(*kvstation::errorOf(call)), "3221225506") << "no status of NT is ARP's";
    call.name = "CallNtPowerInformation";
    EXPECT_EQ(shown(*kvstation::errorOf(call)), "3221225506 STATUS_ACCESS_DENIED");
    call.error = 0;
    EXPECT_FALSE(kvstation::errorOf(call));
    call.error = 67;
    call.succeeded = true;
    EXPECT_FALSE(kvstation::errorOf(call));
}

}  // namespace
}  // namespace kvtest
