#include "kvstation/cause/Causes.h"

#include <algorithm>

#include "kvstation/calls/CallRows.h"
#include "kvstation/cause/UnansweredText.h"
#include "kvstation/cause/UnknownSources.h"
#include "kvstation/cause/WholeText.h"
#include "kvstation/experiments/MovedText.h"
#include "kvstation/platform/Progress.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kMostNext = 16;

Cause causeOf(const World& world, const Question& question, Role role) {
    const simwin::ObservedCall& call = question.call;
    Cause cause{.role = role,
                .call = call.name,
                .question = call.name + "(" + call.arguments + ")",
                .words = std::string(question.row->asks.words),
                .answer = {},
                .error = errorOf(call),
                .place = question.place,
                .canFail = question.canFail};
    if (call.succeeded)
        cause.answer = answerOf(call);
    cause.isUnknown = isUnknown(world, question.place);
    return cause;
}

// Where the text stands in the value, or the most of its beginning; rather at the value's end, where it may be cut.
std::size_t positionIn(const std::string& value, std::string text) {
    if (text.size() > 1 && value.find(text) != std::string::npos)
        return value.find(text);
    for (std::string cut = text; cut.size() > 1; cut.pop_back())
        if (value.ends_with(cut))
            return value.size() - cut.size();
    for (; text.size() > 1; text.pop_back())
        if (const std::size_t place = value.find(text); place != std::string::npos)
            return place;
    return value.size();
}

// Where texts stand in a value, each at a place of its own where there is one: the longest are placed first, so that a
// text that is a part of another one too is found where it stands by itself.
class Placement {
  public:
    explicit Placement(const std::string& value) : m_value(value), m_isTaken(value.size()) {}

    std::size_t place(const std::string& text) {
        for (std::size_t at = m_value.find(text); text.size() > 1 && at != std::string::npos;
             at = m_value.find(text, at + 1)) {
            const auto begin = m_isTaken.begin() + static_cast<std::ptrdiff_t>(at);
            const auto end = begin + static_cast<std::ptrdiff_t>(text.size());
            if (std::find(begin, end, true) != end)
                continue;
            std::fill(begin, end, true);
            return at;
        }
        return positionIn(m_value, text);
    }

  private:
    const std::string& m_value;
    std::vector<bool> m_isTaken;
};

std::vector<std::string> textsOf(const Cause& cause) {
    std::vector<std::string> texts;
    if (cause.answer && cause.role != Role::Decides)
        for (const std::string& item : cause.answer->items)
            texts.push_back(plain(item));
    return texts;
}

struct PlacedCause {
    Cause cause;
    std::vector<std::string> texts;
    std::size_t position;
};

std::size_t longestOf(const PlacedCause& one) {
    std::size_t longest = 0;
    for (const std::string& text : one.texts)
        longest = std::max(longest, text.size());
    return longest;
}

void sortCauses(std::vector<Cause>& causes, const std::string& value) {
    const std::string searched = plain(value);
    std::vector<PlacedCause> placed;
    placed.reserve(causes.size());
    for (Cause& cause : causes) {
        std::vector<std::string> texts = textsOf(cause);
        placed.push_back({std::move(cause), std::move(texts), searched.size()});
    }
    std::vector<PlacedCause*> longestFirst;
    longestFirst.reserve(placed.size());
    for (PlacedCause& one : placed)
        longestFirst.push_back(&one);
    std::ranges::stable_sort(longestFirst, std::ranges::greater(),
                             [](const PlacedCause* one) { return longestOf(*one); });
    Placement placement(searched);
    for (PlacedCause* one : longestFirst)
        for (const std::string& text : one->texts)
            if (one->position == searched.size())
                one->position = placement.place(text);
    std::ranges::stable_sort(placed, [](const PlacedCause& left, const PlacedCause& right) {
        return left.cause.role != right.cause.role ? left.cause.role > right.cause.role
                                                   : left.position < right.position;
    });
    std::ranges::transform(placed, causes.begin(), [](PlacedCause& one) { return std::move(one.cause); });
}

std::string valueOf(const Outcome& outcome, std::size_t field) {
    return Record(outcome.record).textOf(field);
}

// The station without what gave the value; none when that cannot fail.
std::optional<simwin::Station> withoutGivers(const simwin::Station& station, const std::vector<Cause>& causes) {
    simwin::Station changed = station;
    bool isChanged = false;
    for (const Cause& cause : causes) {
        if (cause.role != Role::Gives || !cause.canFail)
            continue;
        World world(changed);
        for (Alternative& alternative : alternativesAt(world, cause.place, {}))
            if (alternative.isAbsence) {
                world.make(alternative.changes);
                changed = *world.station();
                isChanged = true;
                break;
            }
    }
    return isChanged ? std::optional(std::move(changed)) : std::nullopt;
}

}  // namespace

FieldCauses causesOf(World& world, const Collector& collector, const Experiments& experiments, std::size_t field) {
    FieldCauses found{.field = field, .value = valueOf(experiments.outcome(), field), .cut = {}, .causes = {}};
    for (const Question& question : experiments.questions())
        if (const auto role = question.roles.find(field); role != question.roles.end())
            found.causes.push_back(causeOf(world, question, role->second));
    sortCauses(found.causes, found.value);
    found.cut = wholeText(*world.station(), collector, found);
    return found;
}

void addUnknownSources(const simwin::Station& station, const Collector& collector, std::vector<FieldCauses>& all) {
    std::vector<FieldCauses*> causeless;
    std::vector<std::size_t> numbers;
    for (FieldCauses& one : all)
        if (one.causes.empty()) {
            causeless.push_back(&one);
            numbers.push_back(one.field);
        }
    const auto sources = unknownSources(station, collector, numbers);
    for (std::size_t i = 0; i < causeless.size(); ++i) {
        std::ranges::transform(sources[i], std::back_inserter(causeless[i]->unknown), simwin::toUtf8);
        causeless[i]->isOpen = sources[i].empty() && !station.unknown.empty();
    }
}

std::vector<FieldCauses> allCauses(const simwin::Station& station) {
    World world(station);
    const Progress progress("looking for causes");
    const ExperimentOptions options{.progress = [&](double done) { progress.tell(done); }};
    const Collector collector;
    const Experiments experiments(world, collector, options);
    std::vector<FieldCauses> all;
    for (std::size_t field = 0; field < fields().size(); ++field)
        all.push_back(causesOf(world, collector, experiments, field));
    addUnknownSources(station, collector, all);
    return all;
}

std::vector<Cause> giversOf(World& world, const Collector& collector, std::size_t field) {
    ExperimentOptions options;
    options.outputs = Outputs();
    options.outputs.set(field);
    options.giversOnly = true;
    const Experiments experiments(world, collector, options);
    std::vector<Cause> causes;
    for (const Question& question : experiments.questions())
        if (const auto role = question.roles.find(field); role != question.roles.end() && role->second != Role::Decides)
            causes.push_back(causeOf(world, question, role->second));
    sortCauses(causes, valueOf(experiments.outcome(), field));
    return causes;
}

std::vector<NextValue> nextValues(const simwin::Station& station, const Collector& collector,
                                  const FieldCauses& causes) {
    std::vector<NextValue> all;
    std::vector<Cause> givers = causes.causes;
    simwin::Station current = station;
    while (all.size() < kMostNext) {
        std::optional<simwin::Station> without = withoutGivers(current, givers);
        if (!without)
            break;
        current = std::move(*without);
        World world(current);
        simwin::Machine machine(world.station());
        const std::string value = valueOf(runOn(collector, machine), causes.field);
        givers = giversOf(world, collector, causes.field);
        all.push_back({value, givers});
    }
    return all;
}

}  // namespace kvstation
