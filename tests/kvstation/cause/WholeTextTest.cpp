// The whole of texts that a field cuts, on stations of the test's own whose texts are known.
#include "kvstation/cause/WholeText.h"

#include <gmock/gmock.h>

#include "kvstation/cause/Causes.h"
#include "simwin/text/CodePage.h"
#include "tests/kvstation/capture/BareWindows.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::WholeText;
using simwin::Station;

constexpr std::size_t kDisplayedNameLimit = 50;

Station withPrinters(const std::vector<std::string>& names) {
    Station station = windows2000();
    for (const std::string& name : names)
        station.registry.set(kDevices, simwin::textValue(name, "winspool,LPT1:"));
    return station;
}

Station withDisplayedName(const std::string& name) {
    Station station = windows2000();
    station.user.displayName = name;
    return station;
}

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ";") + name;
    return text;
}

// "Printer 1 in the hall", "Printer 2 in the hall", ...
std::vector<std::string> printerNames(std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t i = 1; i <= count; ++i)
        names.push_back("Printer " + std::to_string(i) + " in the hall");
    return names;
}

// As a reader of the explanation gets it, without the search for what decides the field.
std::optional<WholeText> wholeOf(const Station& station, std::string_view name) {
    const std::size_t field = kvstation::findField(name);
    const kvstation::Collector collector;
    kvstation::World world(station);
    simwin::Machine machine(world.station());
    const kvstation::Record record(kvstation::runOn(collector, machine).record);
    const kvstation::FieldCauses causes{.field = field,
                                        .value = record.textOf(field),
                                        .cut = {},
                                        .causes = kvstation::giversOf(world, collector, field)};
    return kvstation::wholeText(station, collector, causes);
}

TEST(WholeText, OfThreeHundredNamesIsAllOfThem) {
    const std::vector<std::string> names = printerNames(300);
    const std::optional<WholeText> whole = wholeOf(withPrinters(names), "szPrinters");
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->text, joined(names));
    EXPECT_FALSE(whole->goesOn);
}

TEST(WholeText, OfAFewNamesIsAllOfThem) {
    std::vector<std::string> names = printerNames(7);
    names.emplace_back(
        "K\xFC"
        "che");
    names.push_back(std::string(120, 'x') + " ends");
    const std::optional<WholeText> whole = wholeOf(withPrinters(names), "szPrinters");
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->text, simwin::toUtf8(joined(names)));
    EXPECT_FALSE(whole->goesOn);
}

// Two names of half the field's length stand in it, and no longer overlap once one of them is taken away.
TEST(WholeText, OfNamesAsLongAsTheFieldIsAllOfThem) {
    std::vector<std::string> names;
    for (char letter = 'a'; letter <= 'f'; ++letter)
        names.push_back(std::string(200, letter) + " of the hall");
    const std::optional<WholeText> whole = wholeOf(withPrinters(names), "szPrinters");
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->text, joined(names));
    EXPECT_FALSE(whole->goesOn);
}

TEST(WholeText, OfOneLongTextIsThatText) {
    std::string name = "K\xF6hler, ";
    for (int i = 0; name.size() < 200; ++i)
        name += std::to_string(i) + "-";
    const std::optional<WholeText> whole = wholeOf(withDisplayedName(name), "szUserDisplayedName");
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->text, simwin::toUtf8(name));
    EXPECT_FALSE(whole->goesOn);
    EXPECT_EQ(kvstation::lengthOf(*whole), std::to_string(name.size()));
}

TEST(WholeText, IsNoneOfATextThatJustFits) {
    const std::string name(kDisplayedNameLimit, 'n');
    EXPECT_FALSE(wholeOf(withDisplayedName(name), "szUserDisplayedName"));
    const std::optional<WholeText> longer = wholeOf(withDisplayedName(name + "!"), "szUserDisplayedName");
    ASSERT_TRUE(longer);
    EXPECT_EQ(longer->text, name + "!");
}

TEST(WholeText, IsNoneOfAListThatJustFits) {
    std::vector<std::string> names = printerNames(9);
    names.push_back(std::string(kPrintersLimit - joined(names).size() - 1, 'x'));
    ASSERT_EQ(joined(names).size(), kPrintersLimit);
    EXPECT_FALSE(wholeOf(withPrinters(names), "szPrinters"));
    names.back() += 'x';
    const std::optional<WholeText> longer = wholeOf(withPrinters(names), "szPrinters");
    ASSERT_TRUE(longer);
    EXPECT_EQ(longer->text, joined(names));
}

TEST(WholeText, IsNoneOfATextThatIsShortOrEmpty) {
    EXPECT_FALSE(wholeOf(withDisplayedName("K\xF6hler"), "szUserDisplayedName"));
    EXPECT_FALSE(wholeOf(withDisplayedName(""), "szUserDisplayedName"));
}

TEST(WholeText, HasItsLengthInCharacters) {
    EXPECT_EQ(kvstation::lengthOf({"B\xC3\xBCro", false}), "4");
    EXPECT_EQ(kvstation::lengthOf({"B\xC3\xBCro", true}), "more than 4");
    EXPECT_EQ(kvstation::lengthOf({"", false}), "0");
}

}  // namespace
}  // namespace kvtest
