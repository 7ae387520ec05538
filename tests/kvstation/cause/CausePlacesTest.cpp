// The places in a station's files at which the causes of its fields are said to stand: what is put there and nowhere
// else makes of the field what the cause's role says. What only decides may do so by failing at one time of several.
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>

#include "kvstation/cause/CauseText.h"
#include "kvstation/cause/Causes.h"
#include "simwin/text/CodePage.h"
#include "tests/kvstation/cause/PlaceEdits.h"
#include "tests/kvstation/cause/StationRun.h"
#include "tests/kvstation/cause/StationRuns.h"

namespace kvtest {
namespace {

using kvstation::Cause;
using kvstation::FieldCauses;
using kvstation::Place;
using kvstation::Role;

constexpr std::string_view kShortForm[] = {"metaframe-session", "windows-98-workstation"};
constexpr std::size_t kCutPart = 3;   // of a text that is cut so much is seen
constexpr std::size_t kComputed = 3;  // so many other values show that a field is computed from a number

// Letters and digits in capitals: fields leave out what stands between them.
std::string lettersOf(std::string_view text) {
    std::string letters;
    for (const char one : text)
        if (std::isalnum(static_cast<unsigned char>(one)) != 0)
            letters += simwin::upperCase(std::string(1, one));
    return letters;
}

bool endsInPartOf(const std::string& value, std::string text) {
    for (; text.size() >= kCutPart; text.pop_back())
        if (value.ends_with(text))
            return true;
    return false;
}

// One field that is said to hang on the place.
class Hanging {
  public:
    Hanging(const FieldCauses& field, const Cause& cause)
        : m_field(field.field), m_role(cause.role), m_value(field.value), m_question(cause.question) {}

    void see(const kvstation::Record& record, const StationFiles::Edited& edited) {
        const std::string value = record.textOf(m_field);
        if (value == m_value)
            return;
        m_changes = true;
        const std::string letters = lettersOf(value);
        const std::string text = lettersOf(edited.text);
        if (edited.isNumber)
            m_ofNumbers.insert(value);
        if (letters.empty() || text.empty())
            return;
        m_isWhole = m_isWhole || text.starts_with(letters);
        m_isPart = m_isPart || letters.find(text) != std::string::npos || endsInPartOf(letters, text);
    }

    bool isProven() const {
        switch (m_role) {
            case Role::Decides:
                return m_changes;
            case Role::Adds:
                return m_isPart || m_isWhole || m_ofNumbers.size() >= kComputed;
            case Role::Gives:
                return m_isWhole || m_ofNumbers.size() >= kComputed;
        }
        return false;
    }

    void see(const kvstation::Record& record) { m_changes = m_changes || record.textOf(m_field) != m_value; }

    const std::string& question() const { return m_question; }
    std::string told() const {
        return std::string(kvstation::fields()[m_field].name) + " " + std::string(kvstation::wordOf(m_role));
    }

  private:
    std::size_t m_field;
    Role m_role;
    std::string m_value;
    std::string m_question;
    bool m_changes = false;
    bool m_isWhole = false;
    bool m_isPart = false;
    std::set<std::string> m_ofNumbers;
};

class CausePlaces : public testing::TestWithParam<std::string> {};

struct PlaceOfCauses {
    Place place;
    std::vector<Hanging> fields;
};

std::map<std::string, PlaceOfCauses> placesOn(const simwin::Station& station) {
    std::map<std::string, PlaceOfCauses> places;
    for (const FieldCauses& field : kvstation::allCauses(station))
        for (const Cause& cause : field.causes) {
            PlaceOfCauses& one = places[cause.place.id()];
            if (!one.place.isListed)  // another question may have told its name too
                one.place = cause.place;
            one.fields.emplace_back(field, cause);
        }
    return places;
}

// The question fails, one time behind the other, as long as that leaves the field. A question of station.json that is
// asked once fails by what stands at its place, or not at all.
void failOnce(const kvstation::Collector& collector, const std::shared_ptr<const simwin::Station>& station,
              const StationRun& run, const Place& place, Hanging& field) {
    std::vector<std::uint64_t> times;
    for (std::size_t i = 0; i < run.calls.size(); ++i)
        if (run.failable[i] != 0 && run.calls[i].name + "(" + run.calls[i].arguments + ")" == field.question())
            times.push_back(run.failable[i]);
    if (times.size() == 1 && !place.isInRegistry())
        return;
    for (std::size_t i = 0; i < times.size() && !field.isProven(); ++i)
        field.see(kvstation::Record(runStation(collector, station, {.toFail = times[i]}).record));
}

TEST_P(CausePlaces, ChangeTheirFieldsAsTheRolesSay) {
    if (std::getenv("KV_PROOF_STATIONS") == nullptr &&
        std::ranges::find(kShortForm, GetParam()) == std::end(kShortForm))
        GTEST_SKIP() << "takes too long for each run; KV_PROOF_STATIONS=1 holds every station";
    const StationFiles files(stationFolder(GetParam()));
    std::map<std::string, PlaceOfCauses> places = placesOn(files.station());
    std::vector<std::string> complaints;
    {
        const kvstation::Collector collector;
        const auto station = std::make_shared<const simwin::Station>(files.station());
        const StationRun run = runStation(collector, station);
        for (auto& [id, one] : places) {
            std::vector<Hanging>& fields = one.fields;
            files.editAt(one.place, [&](const StationFiles::Edited& edited) {
                simwin::Machine machine(edited.station);
                const kvstation::Record record(collector.collect(machine));
                for (Hanging& field : fields)
                    field.see(record, edited);
                return !std::ranges::all_of(fields, &Hanging::isProven);
            });
            for (Hanging& field : fields)
                failOnce(collector, station, run, one.place, field);
            for (const Hanging& field : fields)
                if (!field.isProven())
                    complaints.push_back(nameOf(one.place) + ": " + field.told());
        }
    }
    EXPECT_GT(places.size(), 50u);
    EXPECT_THAT(complaints, testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Stations, CausePlaces, testing::ValuesIn(stationNames()), kvtest::NameOfStationTest());

}  // namespace
}  // namespace kvtest
