#include "kvstation/cause/WholeText.h"

#include <algorithm>

#include "kvstation/cause/Causes.h"
#include "kvstation/experiments/MovedText.h"
#include "kvstation/experiments/Words.h"
#include "kvstation/text/VisibleText.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

// Answers that are taken away one behind the other, and runs in which a list is: behind more of them the text goes on
// unseen.
constexpr std::size_t kMostAnswers = 32;
constexpr std::size_t kMostRuns = 4096;
// So many names of a list are taken away at a time at first.
constexpr std::size_t kFirstNames = 64;

// How many characters at the end of what was seen stand at the beginning of what is seen now.
std::size_t overlap(std::string_view seen, std::string_view now) {
    std::size_t length = std::min(seen.size(), now.size());
    while (!now.starts_with(seen.substr(seen.size() - length)))
        --length;
    return length;
}

// The bytes of the whole characters among the first `size` bytes.
std::size_t wholeCharacters(std::string_view text, std::size_t size) {
    std::size_t end = 0;
    while (end < size) {
        const std::size_t length = simwin::characterLength(text.substr(end));
        if (end + length > size)
            break;
        end += length;
    }
    return end;
}

// Texts here are bytes of the ANSI code page, whose count is what a field's limit counts.
class Mover {
  public:
    Mover(const simwin::Station& station, const Collector& collector, std::size_t field)
        : m_station(station), m_collector(collector), m_field(field) {}

    std::string value() {
        World world(m_station);
        return valueIn(world);
    }

    // The text behind what is seen, in the field's bytes, or none when there is no way to see it. `givers` give what is
    // seen.
    std::optional<WholeText> behind(std::string seen, std::vector<Cause> givers) {
        std::string rest;
        for (std::size_t answer = 0; answer < kMostAnswers; ++answer) {
            World world(m_station);
            if (answer != 0)
                givers = giversOf(world, m_collector, m_field);
            const std::optional<std::string> more = moveUp(world, seen, givers);
            if (!more)
                return answer == 0 ? std::nullopt : std::optional(WholeText{rest, true});
            rest += *more;
            m_station = *world.station();
            seen = valueIn(world);
            if (seen.size() < limit())
                return WholeText{rest};
        }
        return WholeText{rest, true};
    }

    // The value when the decider's text is so long that it leaves the field all its room.
    std::string withLongDecider(const Cause& decider) {
        World world(m_station);
        std::string text = simwin::fromUtf8Leniently(decider.answer->items.front());
        text.resize(std::max(text.size(), limit()), '0');
        std::vector<Change> changes = withWords(world, std::vector<PlacedWord>{{&decider.place, &text}});
        world.make(changes);
        return valueIn(world);
    }

  private:
    std::string valueIn(const World& world) const {
        simwin::Machine machine(world.station());
        const RecordBytes record = runOn(m_collector, machine).record;
        const std::string_view bytes(record.data() + fields()[m_field].offset, fields()[m_field].limit);
        return std::string(bytes.substr(0, bytes.find('\0')));
    }

    std::size_t limit() const { return fields()[m_field].limit; }

    // Takes what stands first away and gives what came into sight at the end.
    std::optional<std::string> moveUp(World& world, const std::string& seen, const std::vector<Cause>& givers) {
        for (const Cause& giver : givers) {
            if (giver.role == Role::Decides || !giver.answer || giver.answer->items.size() != 1)
                continue;
            const std::string text = simwin::fromUtf8Leniently(giver.answer->items.front());
            if (giver.role == Role::Gives && text.size() > seen.size() &&
                simwin::equalNoCase(text.substr(0, seen.size()), seen)) {
                // A character that the field cut in half moves up whole.
                const std::size_t whole = wholeCharacters(text, seen.size());
                const std::string rest = text.substr(whole);
                std::vector<Change> changes = withWords(world, std::vector<PlacedWord>{{&giver.place, &rest}});
                world.make(changes);
                const std::string now = valueIn(world);
                return now.substr(std::min(seen.size() - whole, now.size()));
            }
            if (std::string more = moveListUp(world, giver.place, seen); !more.empty())
                return more;
            if (std::optional<std::string> more = takeAway(world, giver.place, seen))
                return more;
        }
        return std::nullopt;
    }

    // Takes the first names of the list away that the place is in, as long as the field ends in the text that goes on.
    std::string moveListUp(World& world, const Place& place, std::string seen) const {
        std::string rest;
        std::size_t count = place.isListed ? kFirstNames : 0;
        for (std::size_t run = 0; run < kMostRuns && count > 0 && seen.size() == limit(); ++run) {
            std::optional<Change> change = world.withoutFirst(place, count);
            if (!change) {
                count /= 2;
                continue;
            }
            world.toggle(*change);
            const std::string now = valueIn(world);
            const std::size_t common = overlap(seen, now);
            if (common > limit() / 2) {
                rest += now.substr(common);
                seen = now;
            } else {
                world.toggle(*change);
                count /= 2;
            }
        }
        return rest;
    }

    std::optional<std::string> takeAway(World& world, const Place& place, const std::string& seen) {
        for (Alternative& alternative : alternativesAt(world, place, {})) {
            if (!alternative.isAbsence)
                continue;
            world.make(alternative.changes);
            const std::string now = valueIn(world);
            for (std::size_t gone = 1; gone < seen.size(); ++gone)
                if (now.starts_with(seen.substr(gone)))
                    return now.substr(seen.size() - gone);
            world.unmake(alternative.changes);
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

std::string lengthOf(const WholeText& whole) {
    return (whole.goesOn ? "more than " : "") + std::to_string(characters(whole.text));
}

std::optional<WholeText> wholeText(const simwin::Station& station, const Collector& collector,
                                   const FieldCauses& causes) {
    const Field& field = fields()[causes.field];
    if (field.type != FieldType::Text || causes.value.empty())
        return std::nullopt;
    Mover text(station, collector, causes.field);
    const std::string value = text.value();
    if (value.size() == field.limit) {
        const std::optional<WholeText> rest = text.behind(value, causes.causes);
        if (!rest || rest->text.empty())
            return std::nullopt;
        return WholeText{simwin::toUtf8(value + rest->text), rest->goesOn};
    }
    for (const Cause& cause : causes.causes)
        if (mayCut(cause, value))
            if (const std::string whole = text.withLongDecider(cause);
                whole.size() > value.size() && whole.starts_with(value))
                return WholeText{simwin::toUtf8(whole)};
    return std::nullopt;
}

}  // namespace kvstation
