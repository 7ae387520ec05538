#include "kvstation/cause/WholeText.h"

#include <algorithm>

#include "kvstation/cause/Causes.h"
#include "kvstation/cause/MovedText.h"
#include "kvstation/cause/Words.h"
#include "simwin/CodePage.h"

namespace kvstation {
namespace {

// Names that are moved up; behind more of them the text goes on unseen.
constexpr std::size_t kMostSteps = 32;
constexpr const char* kGoesOn = "...";

// Texts here are bytes of the ANSI code page, whose count is what a field's limit counts.
class WholeText {
  public:
    WholeText(const simwin::Station& station, const Collector& collector, std::size_t field)
        : m_station(station), m_collector(collector), m_field(field) {}

    std::string value() {
        World world(m_station);
        return valueIn(world);
    }

    // The text behind what is seen, or none when there is no way to see it.
    std::optional<std::string> behind(std::string seen) {
        const std::size_t limit = fields()[m_field].limit;
        std::string rest;
        for (std::size_t step = 0; step < kMostSteps; ++step) {
            World world(m_station);
            const std::optional<std::string> more = moveUp(world, seen);
            if (!more)
                return std::nullopt;
            rest += *more;
            m_station = *world.station();
            seen = valueIn(world);
            if (seen.size() < limit)
                return rest;
        }
        return rest + kGoesOn;
    }

    // The value when the decider's text is so long that it leaves the field all its room.
    std::string withLongDecider(const Cause& decider) {
        World world(m_station);
        std::string text = simwin::fromUtf8Leniently(decider.answer->items.front());
        text.resize(std::max(text.size(), fields()[m_field].limit), '0');
        apply(world, withWords(world, std::vector<PlacedWord>{{&decider.place, &text}}));
        return valueIn(world);
    }

  private:
    std::string valueIn(const World& world) const {
        simwin::Machine machine(world.station());
        const RecordBytes record = runOn(m_collector, machine).record;
        const std::string_view bytes(record.data() + fields()[m_field].offset, fields()[m_field].limit);
        return std::string(bytes.substr(0, bytes.find('\0')));
    }

    static void apply(World& world, std::vector<Change> changes) {
        for (Change& change : changes)
            world.toggle(change);
    }

    // Takes what stands first away and gives what came into sight at the end.
    std::optional<std::string> moveUp(World& world, const std::string& seen) {
        const std::vector<Cause> givers = giversOf(world, m_collector, m_field);
        for (const Cause& giver : givers) {
            if (!giver.answer || giver.answer->items.size() != 1)
                continue;
            const std::string text = simwin::fromUtf8Leniently(giver.answer->items.front());
            if (giver.role == Role::Gives && text.size() > seen.size() &&
                simwin::equalNoCase(text.substr(0, seen.size()), seen)) {
                const std::string rest = text.substr(seen.size());
                apply(world, withWords(world, std::vector<PlacedWord>{{&giver.place, &rest}}));
                return valueIn(world);
            }
            if (const std::optional<std::string> more = takeAway(world, giver.place, seen))
                return more;
        }
        return std::nullopt;
    }

    std::optional<std::string> takeAway(World& world, const Place& place, const std::string& seen) {
        for (Alternative& alternative : alternativesAt(world, place, {})) {
            if (!alternative.isAbsence)
                continue;
            for (Change& change : alternative.changes)
                world.toggle(change);
            const std::string now = valueIn(world);
            for (std::size_t gone = 1; gone < seen.size(); ++gone)
                if (now.starts_with(seen.substr(gone)))
                    return now.substr(seen.size() - gone);
            for (auto change = alternative.changes.rbegin(); change != alternative.changes.rend(); ++change)
                world.toggle(*change);
        }
        return std::nullopt;
    }

    simwin::Station m_station;
    const Collector& m_collector;
    std::size_t m_field;
};

// A decider whose text is as long as the value may be what cuts it.
bool mayCut(const Cause& cause, const std::string& value) {
    return cause.role == Role::Decides && cause.answer && cause.answer->isText && cause.answer->items.size() == 1 &&
           simwin::fromUtf8Leniently(cause.answer->items.front()).size() == value.size();
}

}  // namespace

std::optional<std::string> wholeText(const simwin::Station& station, const Collector& collector,
                                     const FieldCauses& causes) {
    const Field& field = fields()[causes.field];
    if (field.type != FieldType::Text || causes.value.empty())
        return std::nullopt;
    WholeText text(station, collector, causes.field);
    const std::string value = text.value();
    if (value.size() == field.limit) {
        const std::optional<std::string> rest = text.behind(value);
        return rest && !rest->empty() ? std::optional(simwin::toUtf8(value + *rest)) : std::nullopt;
    }
    for (const Cause& cause : causes.causes)
        if (mayCut(cause, value))
            if (const std::string whole = text.withLongDecider(cause);
                whole.size() > value.size() && whole.starts_with(value))
                return simwin::toUtf8(whole);
    return std::nullopt;
}

}  // namespace kvstation
