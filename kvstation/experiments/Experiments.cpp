#include "kvstation/experiments/Experiments.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <unordered_map>

#include "kvstation/calls/CallRows.h"
#include "kvstation/experiments/AlikePlaces.h"
#include "kvstation/experiments/MovedText.h"
#include "kvstation/experiments/Words.h"

namespace kvstation {
namespace {

// A key that lists more names than this has them tried together, and those apart on which something hangs.
constexpr std::size_t kLongList = 64;
// Of a text that is cut so much is looked for.
constexpr std::size_t kRelated = 4;
// A tenth more or fewer calls are another way; of so many such runs the names that they ask for are noted.
constexpr std::uint64_t kManyOf = 10;
constexpr std::size_t kMostOtherWays = 24;
// So many words are put behind a list at a time: of more, a text that joins them may be cut before it comes to the
// last.
constexpr std::size_t kWordsAtEnd = 8;

std::string_view fieldBytes(const RecordBytes& record, const Field& field) {
    const std::string_view whole(record.data() + field.offset, field.width);
    return field.type == FieldType::Text ? whole.substr(0, whole.find('\0')) : whole;
}

bool isSame(const simwin::TraceLine& left, const simwin::TraceLine& right) {
    return left.level == right.level && left.component == right.component && left.text == right.text;
}

const std::string* findVariable(const Outcome& outcome, const std::string& name) {
    const auto found = std::ranges::find(outcome.published, name, &simwin::Variable::name);
    return found != outcome.published.end() ? &found->value : nullptr;
}

void raise(Roles& roles, const Roles& more) {
    for (const auto& [output, role] : more) {
        const auto [place, isNew] = roles.emplace(output, role);
        place->second = std::max(place->second, role);
    }
}

// Whether there is something in them that is not known yet, or not as close.
bool tellsMore(const Roles& roles, const Roles& known) {
    return std::ranges::any_of(roles, [&](const auto& one) {
        const auto found = known.find(one.first);
        return found == known.end() || found->second < one.second;
    });
}

void forget(Roles& roles, const Outputs& outputs) {
    std::erase_if(roles, [&](const auto& one) { return outputs.test(one.first); });
}

bool haveInCommon(const std::string& text, const std::string& value) {
    return !text.empty() && (text.find(value) != std::string::npos || value.find(text) != std::string::npos ||
                             text.starts_with(value.substr(0, kRelated)) || value.ends_with(text.substr(0, kRelated)));
}

bool isListed(const Question& question) {
    return question.place.isListed;
}

std::string parentOf(const Place& place) {
    return place.kind == Place::Kind::Value ? place.key : std::string(simwin::withoutLastPiece(place.key));
}

}  // namespace

Experiments::Experiments(World& world, const Collector& collector, const ExperimentOptions& options)
    : m_world(world), m_collector(collector), m_options(options), m_asked(isQuestion) {
    simwin::Machine machine(world.station());
    machine.noteQuestions(&m_asked);
    m_outcome = runOn(collector, machine, m_calls);
    m_asked.takeNew();
    m_questions = questionsOf(m_calls, world);
    addNames(m_names, m_calls);
    for (const simwin::Variable& variable : m_outcome.published)
        m_variables.push_back(variable.name);
    experiment();
}

std::string Experiments::nameOf(std::size_t output) const {
    if (output == kTraceOutput)
        return "trace lines";
    return output < fields().size() ? std::string(fields()[output].name) : m_variables[output - fields().size()];
}

void Experiments::experiment() {
    std::unordered_map<std::string, std::size_t> known;
    for (std::size_t i = 0; i < m_questions.size(); ++i) {
        const auto [place, isNew] = known.emplace(m_questions[i].place.id(), m_places.size());
        if (isNew)
            m_places.emplace_back();
        m_places[place->second].questions.push_back(i);
        m_places[place->second].occurrences += m_questions[i].occurrences.size();
    }
    if (m_options.newQuestions)
        leaveAlike();
    std::vector<std::size_t> all;
    for (std::size_t i = 0; i < m_places.size(); ++i)
        if (!m_left.contains(i))
            all.push_back(i);
    if (m_options.giversOnly)
        std::erase_if(all,
                      [&, values = wantedValues()](std::size_t place) { return !isRelated(m_places[place], values); });
    tryPlaces(all);
    if (!m_options.giversOnly)
        tryWords();
}

// Where causes are asked for each place counts, where questions are, some of those that are alike do.
void Experiments::leaveAlike() {
    AlikePlaces alike;
    for (const Question& question : m_questions)
        if (isListed(question))
            alike.addListed(question.place);
    for (std::size_t i = 0; i < m_places.size(); ++i)
        if (alike.count(m_questions[m_places[i].questions.front()].place) >= kMostTried)
            m_left.insert(i);
}

// The letters and digits of the fields that are asked for.
std::vector<std::string> Experiments::wantedValues() const {
    const Record record(m_outcome.record);
    std::vector<std::string> values;
    for (std::size_t field = 0; field < fields().size(); ++field)
        if (std::string value = m_options.outputs.test(field) ? plain(record.textOf(field)) : ""; !value.empty())
            values.push_back(std::move(value));
    return values;
}

// Whether an answer has letters and digits in common with one of the values.
bool Experiments::isRelated(const PlaceQuestions& place, const std::vector<std::string>& values) const {
    for (const std::size_t number : place.questions) {
        const Answer answer = answerOf(m_questions[number].call);
        for (const std::string& item : answer.items)
            if (std::ranges::any_of(
                    values, [text = plain(item)](const std::string& value) { return haveInCommon(text, value); }))
                return true;
    }
    return false;
}

void Experiments::tryPlaces(const std::vector<std::size_t>& places) {
    std::unordered_map<std::string, std::vector<std::size_t>> lists;
    for (const std::size_t place : places)
        if (const Question& question = m_questions[m_places[place].questions.front()]; isListed(question))
            lists[std::to_string(static_cast<int>(question.place.kind)) + parentOf(question.place)].push_back(place);
    std::set<std::size_t> done;
    for (const auto& [parent, list] : lists)
        if (list.size() > kLongList) {
            done.insert(list.begin(), list.end());
            tryList(list);
        }
    m_longLists = done;
    for (const std::size_t place : places) {
        if (m_options.progress)
            m_options.progress(static_cast<double>(place) / static_cast<double>(places.size()));
        if (!done.contains(place))
            tryPlace(m_places[place]);
    }
}

// Halves of a list of which something hangs on one of them, down to single names.
void Experiments::tryList(std::span<const std::size_t> places) {
    if (places.size() == 1)
        return tryPlace(m_places[places.front()]);
    std::vector<Place> listed;
    for (const std::size_t place : places)
        listed.push_back(m_questions[m_places[place].questions.front()].place);
    if (!changesAnything(listed))
        return;
    tryList(places.first(places.size() / 2));
    tryList(places.subspan(places.size() / 2));
}

bool Experiments::changesAnything(std::span<const Place> listed) {
    std::vector<Alternative> alternatives = alternativesOf(m_world, listed);
    const auto remake = [&] { alternatives = alternativesOf(m_world, listed); };
    return std::ranges::any_of(alternatives, [&](Alternative& one) { return differences(run(one, remake)).any(); });
}

void Experiments::tryPlace(const PlaceQuestions& place) {
    const Question& first = m_questions[place.questions.front()];
    std::vector<Effect> effects;
    std::vector<Outcome> series;
    int lastSeries = 0;
    std::vector<Alternative> alternatives = alternativesAt(m_world, first.place, first.row->asks.samples);
    for (std::size_t i = 0; i < alternatives.size(); ++i) {
        Alternative& alternative = alternatives[i];
        if (m_options.giversOnly && !alternative.replacement)
            continue;
        // What stands at the place itself was asked for, so that there are as many alternatives to it as before.
        Outcome outcome = run(alternative, [&] {
            std::vector<Alternative> anew = alternativesAt(m_world, first.place, first.row->asks.samples);
            if (anew.size() != alternatives.size())
                return;
            std::move(anew.begin() + static_cast<std::ptrdiff_t>(i), anew.end(),
                      alternatives.begin() + static_cast<std::ptrdiff_t>(i));
        });
        const int number = alternative.series;
        if (number != 0 && number != lastSeries)
            series.clear();
        lastSeries = number;
        if (Roles roles = rolesIn(outcome, alternative); !roles.empty())
            effects.push_back({std::move(alternative), std::move(roles)});
        if (number == 0)
            continue;
        series.push_back(std::move(outcome));
        if (series.size() == kSeriesLength)
            creditComputed(series, number, effects);
    }
    tryOccurrences(place, effects);
    if (!m_options.giversOnly && m_options.outputs.any())
        tryFailures(place);
}

// A number of which three other ones give three other values.
void Experiments::creditComputed(const std::vector<Outcome>& runs, int series, std::vector<Effect>& effects) {
    for (std::size_t i = 0; i < fields().size(); ++i) {
        const Field& field = fields()[i];
        std::set<std::string_view> values = {fieldBytes(m_outcome.record, field)};
        for (const Outcome& outcome : runs)
            values.insert(fieldBytes(outcome.record, field));
        if (values.size() != runs.size() + 1 || values.contains(""))
            continue;
        const Role role = field.type == FieldType::Text ? Role::Adds : Role::Gives;
        for (Effect& effect : effects)
            if (effect.alternative.series == series)
                raise(effect.roles, {{i, role}});
    }
}

void Experiments::credit(Occurrence& occurrence, Question& question, const Roles& roles) {
    raise(occurrence.roles, roles);
    raise(question.roles, roles);
}

void Experiments::creditAll(Question& question, const Roles& roles) {
    for (Occurrence& occurrence : question.occurrences)
        credit(occurrence, question, roles);
}

// Whether another question is about a part of what stands at the place: what moves with that part is that one's answer.
bool Experiments::isAskedInParts(const PlaceQuestions& place) const {
    const Place& whole = m_questions[place.questions.front()].place;
    const auto isPart = [&](const Question& question) {
        const simwin::MemberPath& path = question.place.member;
        return question.place.kind == Place::Kind::Member && path.size() > whole.member.size() &&
               std::equal(whole.member.begin(), whole.member.end(), path.begin());
    };
    return whole.kind == Place::Kind::Member && std::ranges::any_of(m_questions, isPart);
}

// Which of the questions about one place it is, and which time of its asking, that an output hangs on.
void Experiments::tryOccurrences(const PlaceQuestions& place, std::vector<Effect>& effects) {
    for (Effect& effect : effects)
        forget(effect.roles, ~m_options.outputs);
    Roles all;
    for (const Effect& effect : effects)
        raise(all, effect.roles);
    const bool holdsOthers = isAskedInParts(place);
    if (place.occurrences == 1 && !holdsOthers) {
        creditAll(m_questions[place.questions.front()], all);
        return;
    }
    forget(all, tryEachOccurrence(place, effects));
    if (holdsOthers)
        for (auto& [output, role] : all)
            role = Role::Decides;
    forget(all, tryFunctions(place, effects, all));
    // What changes only when all of them answer otherwise hangs on all.
    for (const std::size_t number : place.questions)
        creditAll(m_questions[number], all);
}

Outputs Experiments::tryEachOccurrence(const PlaceQuestions& place, std::vector<Effect>& effects) {
    Outputs found;
    for (Effect& effect : effects)
        for (const std::size_t number : place.questions)
            for (Occurrence& occurrence : m_questions[number].occurrences)
                if (tellsMore(effect.roles, occurrence.roles))
                    found |= tryOccurrence(occurrence, m_questions[number], effect);
    return found;
}

// What stays as it is while a function answers as before hangs on that function's questions. What comes with another
// answer all the same, as functions come with a version of Windows, leaves the function out.
Outputs Experiments::tryFunctions(const PlaceQuestions& place, std::vector<Effect>& effects, const Roles& all) {
    std::map<std::string, std::vector<std::size_t>> functions;
    for (const std::size_t number : place.questions)
        functions[m_questions[number].call.name].push_back(number);
    Outputs found;
    if (functions.size() == 1)
        return found;
    for (const auto& [name, questions] : functions) {
        Roles roles;
        for (Effect& effect : effects)
            raise(roles, rolesWithout(name, effect, all));
        for (const auto& [output, role] : roles)
            found.set(output);
        for (const std::size_t number : questions)
            creditAll(m_questions[number], roles);
    }
    return found;
}

// Those of `all` that the effect has no more when the function's calls answer as before.
Roles Experiments::rolesWithout(const std::string& function, Effect& effect, const Roles& all) {
    Roles roles;
    for (const auto& [output, role] : effect.roles)
        if (const auto wanted = all.find(output); wanted != all.end())
            roles.insert(*wanted);
    if (roles.empty())
        return roles;
    forget(roles, differences(runWithoutCallsOf(effect.alternative, function)));
    return roles;
}

Outputs Experiments::tryOccurrence(Occurrence& occurrence, Question& question, Effect& effect) {
    const Outcome outcome = runOnce(effect.alternative, m_calls[occurrence.call].number);
    Roles roles = rolesIn(outcome, effect.alternative);
    Outputs found;
    for (auto& [output, role] : roles) {
        found.set(output);
        if (const auto whole = effect.roles.find(output); whole != effect.roles.end())
            role = std::max(role, whole->second);
    }
    credit(occurrence, question, roles);
    return found;
}

void Experiments::tryFailures(const PlaceQuestions& place) {
    for (const std::size_t number : place.questions) {
        Question& question = m_questions[number];
        for (Occurrence& occurrence : question.occurrences) {
            const std::uint64_t failable = m_calls[occurrence.call].failable;
            if (failable == 0 || !m_calls[occurrence.call].call.succeeded)
                continue;
            credit(occurrence, question, rolesIn(runFailing(failable), {}));
        }
    }
}

// Every word once at each place, for each output on which nothing at the place was found to have an effect. A key that
// gets another name takes what is in it along: such places are tried apart from others, and so are ends of lists.
void Experiments::tryWords() {
    const std::vector<std::string> words = wordsFor(m_names);
    std::vector<std::size_t> ends;
    std::vector<std::size_t> keys;
    std::vector<std::size_t> others;
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        const Question& first = m_questions[m_places[i].questions.front()];
        if (m_longLists.contains(i) || m_left.contains(i) || !takesWord(m_world, first.place, first.row->asks.samples))
            continue;
        (isEnd(i) ? ends : first.place.kind == Place::Kind::Key ? keys : others).push_back(i);
    }
    for (const std::vector<std::size_t>& texts : {ends, keys, others}) {
        tryWordsAt(texts, words);
        if (m_options.everyWord)
            tryEveryWord(words, texts);
    }
}

void Experiments::tryWordsAt(const std::vector<std::size_t>& texts, const std::vector<std::string>& words) {
    std::vector<Outputs> open(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        open[i] = wantedOutputs() & ~hangingOn(m_places[texts[i]]);
    for (Outputs cluster = nextCluster(texts, open); cluster.any(); cluster = nextCluster(texts, open))
        tryWordsOf(cluster, words, texts, open);
}

// What is put behind a list's end stands beside what else is put there.
bool Experiments::isEnd(std::size_t place) const {
    const Place::Kind kind = m_questions[m_places[place].questions.front()].place.kind;
    return kind == Place::Kind::EndOfKeys || kind == Place::Kind::EndOfValues;
}

// Many words at a time, and the digits, of which switches are made, alone: one setting can hide another.
void Experiments::tryEveryWord(const std::vector<std::string>& words, const std::vector<std::size_t>& texts) {
    for (const std::size_t place : texts)
        for (const std::string& word : words)
            if (word.size() == 1 && !m_questions[m_places[place].questions.front()].place.isInRegistry())
                runWith(std::vector<WordAt>{{place, &word}});
    for (std::size_t turn = 0; turn < turnsOf(texts, words); ++turn)
        runWith(placedWords(texts, words, turn));
}

Outputs Experiments::wantedOutputs() const {
    Outputs there;
    for (std::size_t i = 0; i < fields().size() + m_variables.size(); ++i)
        there.set(i);
    return there & m_options.outputs;
}

// Outputs to be watched together: those for which the most places are open that none of them hangs on. None when no
// place is open any more.
Outputs Experiments::nextCluster(const std::vector<std::size_t>& texts, const std::vector<Outputs>& open) const {
    std::vector<Outputs> hanging(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        hanging[i] = hangingOn(m_places[texts[i]]);
    const auto tried = [&](const Outputs& cluster) {
        std::size_t count = 0;
        for (std::size_t i = 0; i < texts.size(); ++i)
            if ((hanging[i] & cluster).none())
                count += (open[i] & cluster).count();
        return count;
    };
    Outputs cluster;
    std::size_t most = 0;
    for (std::size_t output = 0; output < kMostOutputs; ++output) {
        Outputs larger = cluster;
        larger.set(output);
        const std::size_t count = tried(larger);
        if (count <= most)
            continue;
        cluster = larger;
        most = count;
    }
    return cluster;
}

void Experiments::tryWordsOf(const Outputs& cluster, const std::vector<std::string>& words,
                             const std::vector<std::size_t>& texts, std::vector<Outputs>& open) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if ((hangingOn(m_places[texts[i]]) & cluster).any() || (open[i] & cluster).none())
            continue;
        places.push_back(texts[i]);
        open[i] &= ~cluster;
    }
    for (std::size_t turn = 0; turn < turnsOf(places, words); ++turn) {
        std::vector<WordAt> placed = placedWords(places, words, turn);
        for (std::optional<std::size_t> hit = findHit(cluster, placed); hit; hit = findHit(cluster, placed)) {
            std::erase_if(placed, [&](const WordAt& one) { return one.place == *hit; });
            std::erase(places, *hit);
            // For the cluster's other outputs the place is tried anew.
            const std::ptrdiff_t index = std::ranges::find(texts, *hit) - texts.begin();
            open[static_cast<std::size_t>(index)] |= cluster & wantedOutputs() & ~hangingOn(m_places[*hit]);
        }
    }
}

// How many runs it takes until every word was at every place.
std::size_t Experiments::turnsOf(const std::vector<std::size_t>& places, const std::vector<std::string>& words) const {
    const std::size_t together = !places.empty() && isEnd(places.front()) ? kWordsAtEnd : 1;
    return (words.size() + together - 1) / together;
}

std::vector<Experiments::WordAt> Experiments::placedWords(const std::vector<std::size_t>& places,
                                                          const std::vector<std::string>& words,
                                                          std::size_t turn) const {
    std::vector<WordAt> placed;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::size_t together = isEnd(places[i]) ? kWordsAtEnd : 1;
        for (std::size_t word = 0; word < together; ++word)
            placed.push_back({places[i], &words[(i + turn * together + word) % words.size()]});
    }
    return placed;
}

Outputs Experiments::hangingOn(const PlaceQuestions& place) const {
    Outputs outputs;
    for (const std::size_t number : place.questions)
        for (const auto& [output, role] : m_questions[number].roles)
            outputs.set(output);
    return outputs;
}

// A place where the word changes one of the outputs, which is credited with it. Words that change one together alone
// are none.
std::optional<std::size_t> Experiments::findHit(const Outputs& outputs, std::span<const WordAt> placed) {
    if (placed.empty())
        return std::nullopt;
    Effect effect = runWith(placed);
    if (std::ranges::none_of(effect.roles, [&](const auto& one) { return outputs.test(one.first); }))
        return std::nullopt;
    if (placed.size() == 1) {
        std::vector<Effect> effects;
        effects.push_back(std::move(effect));
        tryOccurrences(m_places[placed.front().place], effects);
        return placed.front().place;
    }
    const std::optional<std::size_t> hit = findHit(outputs, placed.first(placed.size() / 2));
    return hit ? hit : findHit(outputs, placed.subspan(placed.size() / 2));
}

Experiments::Effect Experiments::runWith(std::span<const WordAt> placed) {
    std::vector<PlacedWord> words;
    for (const WordAt& one : placed)
        words.push_back({&m_questions[m_places[one.place].questions.front()].place, one.word});
    Alternative alternative{withWords(m_world, words)};
    const auto remake = [&] { alternative = Alternative{withWords(m_world, words)}; };
    Roles roles = rolesIn(run(alternative, remake), alternative);
    return {std::move(alternative), std::move(roles)};
}

Outcome Experiments::run(Alternative& alternative, const std::function<void()>& remake) {
    for (;;) {
        m_world.make(alternative.changes);
        simwin::Machine machine(m_world.station());
        Outcome outcome = runNoted(machine);
        const bool isOther = noteOtherRun(outcome, [](simwin::Machine&) {});
        m_world.unmake(alternative.changes);
        if (!isOther || !isFilledIn())
            return outcome;
        remake();
    }
}

Outcome Experiments::runFailing(std::uint64_t failable) {
    for (;;) {
        simwin::Machine machine(m_world.station());
        machine.failCall(failable);
        Outcome outcome = runNoted(machine);
        if (!noteOtherRun(outcome, [&](simwin::Machine& again) { again.failCall(failable); }) || !isFilledIn())
            return outcome;
    }
}

Outcome Experiments::runOnce(Alternative& alternative, std::uint64_t number) {
    const std::function<void()> toggle = togglesOf(alternative);
    simwin::Machine machine(m_world.station());
    machine.changeCall(number, toggle);
    return runOn(m_collector, machine);
}

Outcome Experiments::runWithoutCallsOf(Alternative& alternative, const std::string& function) {
    const std::function<void()> toggle = togglesOf(alternative);
    toggle();
    simwin::Machine machine(m_world.station());
    machine.changeCallsOf(function, toggle);
    Outcome outcome = runOn(m_collector, machine);
    toggle();
    return outcome;
}

// Makes the alternative's changes, and unmakes them the next time.
std::function<void()> Experiments::togglesOf(Alternative& alternative) {
    return [this, &alternative, isMade = false]() mutable {
        if (isMade)
            m_world.unmake(alternative.changes);
        else
            m_world.make(alternative.changes);
        isMade = !isMade;
    };
}

// Questions are noted where somebody is told of new ones.
Outcome Experiments::runNoted(simwin::Machine& machine) {
    if (m_options.newQuestions)
        machine.noteQuestions(&m_asked);
    return runOn(m_collector, machine);
}

// A run that asks many more or fewer questions went another way, and asks for other names.
bool Experiments::isOtherWay(const Outcome& outcome) const {
    const std::uint64_t least = std::min(outcome.calls, m_outcome.calls);
    const std::uint64_t most = std::max(outcome.calls, m_outcome.calls);
    return (most - least) * kManyOf > m_outcome.calls;
}

// True when the run asked something new.
bool Experiments::noteOtherRun(const Outcome& outcome, const std::function<void(simwin::Machine&)>& prepare) {
    if (m_otherWays < kMostOtherWays && isOtherWay(outcome)) {
        ++m_otherWays;
        simwin::Machine machine(m_world.station());
        prepare(machine);
        std::vector<AskedCall> calls;
        runOn(m_collector, machine, calls, Told::FactsAlone);
        addNames(m_names, calls);
    }
    const std::vector<simwin::ObservedCall> asked = m_asked.takeNew();
    if (!asked.empty())
        m_options.newQuestions(asked);
    return !asked.empty();
}

bool Experiments::isFilledIn() const {
    return m_options.fillIn && m_options.fillIn();
}

Outputs Experiments::differences(const Outcome& other) {
    Outputs outputs;
    for (const std::size_t field : differingFields(m_outcome.record, other.record))
        outputs.set(field);
    for (const simwin::Variable& variable : other.published)
        if (std::ranges::find(m_variables, variable.name) == m_variables.end() &&
            fields().size() + m_variables.size() < kTraceOutput)
            m_variables.push_back(variable.name);
    for (std::size_t i = 0; i < m_variables.size(); ++i) {
        const std::string* left = findVariable(m_outcome, m_variables[i]);
        const std::string* right = findVariable(other, m_variables[i]);
        outputs[fields().size() + i] = left == nullptr || right == nullptr ? left != right : *left != *right;
    }
    outputs[kTraceOutput] = !std::ranges::equal(m_outcome.trace, other.trace, isSame);
    return outputs;
}

Roles Experiments::rolesIn(const Outcome& other, const Alternative& alternative) {
    const Outputs outputs = differences(other);
    Roles roles;
    for (std::size_t i = 0; outputs.any() && i < kMostOutputs; ++i) {
        if (!outputs[i])
            continue;
        Role role = Role::Decides;
        if (alternative.replacement && !alternative.isNumber && i < fields().size()) {
            const Field& field = fields()[i];
            role = field.type == FieldType::Text
                       ? roleOfText(fieldBytes(m_outcome.record, field), fieldBytes(other.record, field),
                                    *alternative.replacement)
                       : roleOfNumber(Record(m_outcome.record).textOf(i), Record(other.record).textOf(i),
                                      *alternative.replacement);
        }
        roles.emplace(i, role);
    }
    return roles;
}

}  // namespace kvstation
