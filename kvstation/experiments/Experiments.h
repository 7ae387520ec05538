// Why a station's record is what it is, found by changing one answer at a time and running the module again.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "kvstation/experiments/Alternatives.h"
#include "kvstation/experiments/ModuleRun.h"
#include "kvstation/experiments/Questions.h"
#include "kvstation/experiments/Words.h"
#include "kvstation/experiments/World.h"

namespace kvstation {

struct ExperimentOptions {
    // Those whose causes are asked for.
    Outputs outputs = Outputs().set();
    // No more than what gives the outputs: another text or number in the place of answers that have one in common with
    // them.
    bool giversOnly = false;
    // Every word of the module at every place too, for the sake of new questions.
    bool everyWord = false;
    // Told how far the experiments are, from 0 to 1. May be empty.
    std::function<void(double done)> progress{};
    // Told what a run asked that neither the station's own nor one before it did, where there is such. Of many places
    // that are alike only some are tried then. May be empty.
    std::function<void(const std::vector<simwin::ObservedCall>& calls)> newQuestions{};
    // Called behind each such run, when no change is in force. True when the station holds more by now: the run is made
    // again. May be empty.
    std::function<bool()> fillIn{};
};

class Experiments {
  public:
    // Makes them all. The world is as it was when they are over.
    Experiments(World& world, const Collector& collector, const ExperimentOptions& options = {});

    const Outcome& outcome() const { return m_outcome; }
    const std::vector<AskedCall>& calls() const { return m_calls; }
    const std::vector<Question>& questions() const { return m_questions; }
    // "szStation", "KVIP", "trace lines".
    std::string nameOf(std::size_t output) const;

  private:
    struct PlaceQuestions {
        std::vector<std::size_t> questions;
        std::size_t occurrences = 0;
    };
    struct Effect {
        Alternative alternative;
        Roles roles;
    };
    struct WordAt {
        std::size_t place;
        const std::string* word;
    };

    void experiment();
    void leaveAlike();
    void tryPlaces(const std::vector<std::size_t>& places);
    void tryPlace(const PlaceQuestions& place);
    void tryList(std::span<const std::size_t> places);
    bool changesAnything(std::span<const Place> listed);
    void creditComputed(const std::vector<Outcome>& runs, int series, std::vector<Effect>& effects);
    bool isAskedInParts(const PlaceQuestions& place) const;
    void tryOccurrences(const PlaceQuestions& place, std::vector<Effect>& effects);
    Outputs tryEachOccurrence(const PlaceQuestions& place, std::vector<Effect>& effects);
    Outputs tryFunctions(const PlaceQuestions& place, std::vector<Effect>& effects, const Roles& all);
    Roles rolesWithout(const std::string& function, Effect& effect, const Roles& all);
    Outputs tryOccurrence(Occurrence& occurrence, Question& question, Effect& effect);
    void tryFailures(const PlaceQuestions& place);
    std::vector<std::string> wantedValues() const;
    bool isRelated(const PlaceQuestions& place, const std::vector<std::string>& values) const;
    void tryWords();
    void tryWordsAt(const std::vector<std::size_t>& texts, const std::vector<std::string>& words);
    void tryEveryWord(const std::vector<std::string>& words, const std::vector<std::size_t>& texts);
    Outputs wantedOutputs() const;
    Outputs nextCluster(const std::vector<std::size_t>& texts, const std::vector<Outputs>& open) const;
    void tryWordsOf(const Outputs& cluster, const std::vector<std::string>& words,
                    const std::vector<std::size_t>& texts, std::vector<Outputs>& open);
    bool isEnd(std::size_t place) const;
    std::optional<std::size_t> findHit(const Outputs& outputs, std::span<const WordAt> placed);
    Effect runWith(std::span<const WordAt> placed);
    std::size_t turnsOf(const std::vector<std::size_t>& places, const std::vector<std::string>& words) const;
    std::vector<WordAt> placedWords(const std::vector<std::size_t>& places, const std::vector<std::string>& words,
                                    std::size_t turn) const;
    Outputs hangingOn(const PlaceQuestions& place) const;
    void credit(Occurrence& occurrence, Question& question, const Roles& roles);
    void creditAll(Question& question, const Roles& roles);

    // `remake` makes the alternative anew of what the station holds by now.
    Outcome run(Alternative& alternative, const std::function<void()>& remake);
    Outcome runOnce(Alternative& alternative, std::uint64_t number);
    Outcome runWithoutCallsOf(Alternative& alternative, const std::string& function);
    std::function<void()> togglesOf(Alternative& alternative);
    Outcome runFailing(std::uint64_t failable);
    Outcome runNoted(simwin::Machine& machine);
    bool isOtherWay(const Outcome& outcome) const;
    bool noteOtherRun(const Outcome& outcome, const std::function<void(simwin::Machine&)>& prepare);
    bool isFilledIn() const;
    Outputs differences(const Outcome& other);
    Roles rolesIn(const Outcome& other, const Alternative& alternative);

    World& m_world;
    const Collector& m_collector;
    const ExperimentOptions& m_options;
    Outcome m_outcome;
    std::vector<AskedCall> m_calls;
    std::vector<Question> m_questions;
    std::vector<PlaceQuestions> m_places;
    std::vector<std::string> m_variables;
    std::set<std::size_t> m_longLists;  // places that are names in one
    std::set<std::size_t> m_left;       // places with which nothing is tried
    AskedNames m_names;
    std::size_t m_otherWays = 0;
    simwin::AskedQuestions m_asked;
};

}  // namespace kvstation
