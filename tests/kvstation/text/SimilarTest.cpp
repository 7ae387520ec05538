#include "kvstation/text/Similar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kvstation/record/FieldTable.h"

namespace kvstation {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Similar, CaseDoesNotCount) {
    EXPECT_THAT(similarFields("SZOS").front(), "szOS");
}

TEST(Similar, TwoLettersMayDiffer) {
    EXPECT_THAT(similarFields("szMacAdress").front(), "szMACAddress");
}

TEST(Similar, APartOfANameFindsIt) {
    EXPECT_THAT(similarFields("printer"), ElementsAre("szPrinters", "szDefaultPrinter"));
}

TEST(Similar, AtMostThreeWordsAreGiven) {
    EXPECT_EQ(similarFields("address").size(), 3u);
}

TEST(Similar, NothingNearGivesNothing) {
    EXPECT_THAT(similarFields("frobnicate"), IsEmpty());
    EXPECT_THAT(similarFields(""), IsEmpty());
    EXPECT_THAT(similarFields(std::string(100000, 'x')), IsEmpty());
}

TEST(Similar, IsToldBehindASemicolon) {
    const std::string_view words[] = {"show", "diff"};
    EXPECT_EQ(describeSimilar(words), "; close to it: show, diff");
    EXPECT_EQ(describeSimilar({}), "");
}

}  // namespace
}  // namespace kvstation
