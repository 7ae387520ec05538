#include "tests/kvstation/cause/Proof.h"

#include <algorithm>
#include <map>
#include <set>

#include "kvstation/experiments/Experiments.h"
#include "kvstation/experiments/OtherTexts.h"
#include "kvstation/experiments/Words.h"
#include "kvstation/record/FieldTable.h"
#include "kvstation/text/VisibleText.h"
#include "simwin/text/CodePage.h"
#include "tests/kvstation/calls/OwnWork.h"
#include "tests/kvstation/cause/StationEdits.h"
#include "tests/kvstation/cause/StationRun.h"

namespace kvtest {
namespace {

using kvstation::Experiments;
using kvstation::Question;
using kvstation::World;
using simwin::Station;

// Whether one of two members lies in the other or is it.
bool isOnWayTo(const simwin::MemberPath& left, const simwin::MemberPath& right) {
    return !right.empty() &&
           std::ranges::equal(left.begin(), left.begin() + std::min(std::ssize(left), std::ssize(right)), right.begin(),
                              right.begin() + std::min(std::ssize(left), std::ssize(right)));
}

std::string nameOf(std::size_t field) {
    return std::string(kvstation::fields()[field].name);
}

template <class List>
void chooseOf(List& list, std::size_t most, Random& random) {
    for (std::size_t i = 0; i < std::min(most, list.size()); ++i)
        std::swap(list[i], list[i + random.below(static_cast<std::uint32_t>(list.size() - i))]);
    list.resize(std::min(most, list.size()));
}

class Proof {
  public:
    Proof(const kvstation::Collector& collector, const Station& station, std::uint64_t seed, const ProofEffort& effort)
        : m_collector(collector),
          m_station(station),
          m_random(seed),
          m_effort(effort),
          m_world(station),
          m_experiments(m_world, collector),
          m_base(run(station)) {}

    ProofResult result() {
        if (!isSameRun())
            return std::move(m_result);
        for (std::size_t i = 0; i < m_experiments.questions().size(); ++i)
            for (const kvstation::Occurrence& one : m_experiments.questions()[i].occurrences)
                m_questionOf[one.call] = i;
        failures();
        edits();
        if (m_effort.provesNamed)
            named();
        return std::move(m_result);
    }

  private:
    StationRun run(const Station& station, std::uint64_t callToFail = 0) {
        ++m_result.runs;
        return runStation(m_collector, std::make_shared<Station>(station), {.toFail = callToFail});
    }
    // With the changes in force, all the time or for one call alone.
    StationRun runChanged(std::vector<kvstation::Change> changes, std::uint64_t call = 0) {
        ++m_result.runs;
        bool isMade = false;
        const auto toggle = [&] {
            isMade = !isMade;
            if (isMade)
                m_world.make(changes);
            else
                m_world.unmake(changes);
        };
        if (call != 0)
            return runStation(m_collector, m_world.station(), {.toChange = call, .toggle = toggle});
        toggle();
        StationRun other = runStation(m_collector, m_world.station());
        toggle();
        return other;
    }
    void complain(const std::string& what) { m_result.complaints.push_back(kvstation::visible(what)); }

    bool isSameRun() {
        const StationRun again = run(m_station);
        if (!differingFields(m_base, again).empty() || m_base.calls.size() != m_experiments.calls().size()) {
            complain("two runs differ");
            return false;
        }
        // What holds an address of memory differs without a cause and can tell nothing.
        m_unsteady = differingAnswers(m_base, again);
        return true;
    }

    bool names(std::size_t call, std::size_t field) const {
        const auto found = m_questionOf.find(call);
        return found != m_questionOf.end() && m_experiments.questions()[found->second].roles.contains(field);
    }

    std::string told(std::size_t call) const {
        return m_base.calls[call].name + "(" + m_base.calls[call].arguments + ")";
    }

    void failures() {
        std::vector<std::size_t> calls;
        for (std::size_t i = 0; i < m_base.calls.size(); ++i)
            if (m_base.failable[i] != 0 && !isOwnWork(m_base.calls[i].name))
                calls.push_back(i);
        chooseOf(calls, m_effort.mostFailures, m_random);
        for (const std::size_t call : calls)
            for (const std::size_t field : differingFields(m_base, run(m_station, m_base.failable[call]))) {
                m_proven.insert({call, field});
                if (!names(call, field))
                    complain(nameOf(field) + " changes when the call fails, which is not named: " + told(call));
            }
    }

    void edits() {
        std::vector<StationEdit> all = editsOf(m_station, m_base.calls, m_random);
        chooseOf(all, m_effort.mostEdits, m_random);
        for (const StationEdit& edit : all)
            if (const std::optional<Station> other = edit.make())
                hold(edit, run(*other));
    }

    // A field that changed hangs on one of the answers that did.
    void hold(const StationEdit& edit, const StationRun& other) {
        const std::set<std::size_t> changed = differingFields(m_base, other);
        if (changed.empty())
            return;
        std::set<std::size_t> answers = differingAnswers(m_base, other);
        std::erase_if(answers, [&](std::size_t call) { return m_unsteady.contains(call); });
        if (std::erase_if(answers, [&](std::size_t call) { return isOwnWork(m_base.calls[call].name); }) != 0 &&
            answers.empty())
            return;
        for (const std::size_t field : changed) {
            if (answers.size() == 1)
                m_proven.insert({*answers.begin(), field});
            if (isAtNamedPlace(edit, field) ||
                std::ranges::any_of(answers, [&](std::size_t call) { return names(call, field); }))
                continue;
            std::string asked;
            for (const std::size_t call : answers)
                asked += (asked.empty() ? "" : ", ") + told(call);
            complain(nameOf(field) + " changes under an edit that changes no answer that it names: " +
                     simwin::toUtf8(edit.what) + "; changed: " + asked);
        }
    }

    // What is asked in another way after the edit, or has no text for what the edit changed, is named by its place.
    bool isAtNamedPlace(const StationEdit& edit, std::size_t field) const {
        return !edit.member.empty() && std::ranges::any_of(m_experiments.questions(), [&](const Question& question) {
            return question.roles.contains(field) && isOnWayTo(edit.member, question.place.member);
        });
    }

    void named() {
        for (const Question& question : m_experiments.questions())
            for (const auto& [output, role] : question.roles)
                if (output < kvstation::fields().size() && !isProven(question, output))
                    complain(nameOf(output) + " does not change with a cause that is named: " + question.call.name +
                             "(" + question.call.arguments + ")");
    }

    bool isProven(const Question& question, std::size_t field) {
        if (std::ranges::any_of(question.occurrences, [&](const kvstation::Occurrence& one) {
                return m_proven.contains({one.call, field});
            }))
            return true;
        for (const kvstation::Occurrence& one : question.occurrences)
            if (m_base.failable[one.call] != 0 &&
                differingFields(m_base, run(m_station, m_base.failable[one.call])).contains(field))
                return true;
        std::vector<std::vector<kvstation::Change>> others;
        for (kvstation::Alternative& one :
             kvstation::alternativesAt(m_world, question.place, question.row->asks.samples))
            others.push_back(std::move(one.changes));
        if (isChangedByOneOf(others, question, field))
            return true;
        others.clear();
        for (const std::string& word : kvstation::wordsFor({}))
            others.push_back(
                kvstation::withWords(m_world, std::vector<kvstation::PlacedWord>{{&question.place, &word}}));
        return isChangedByOneOf(others, question, field);
    }

    // Every time that the place is asked, or one time alone.
    bool isChangedByOneOf(const std::vector<std::vector<kvstation::Change>>& others, const Question& question,
                          std::size_t field) {
        const auto changes = [&](std::uint64_t call) {
            return std::ranges::any_of(others, [&](const std::vector<kvstation::Change>& other) {
                return differingFields(m_base, runChanged(other, call)).contains(field);
            });
        };
        return changes(0) || std::ranges::any_of(question.occurrences, [&](const kvstation::Occurrence& one) {
                   return changes(m_experiments.calls()[one.call].number);
               });
    }

    const kvstation::Collector& m_collector;
    const Station& m_station;
    Random m_random;
    ProofEffort m_effort;
    ProofResult m_result;
    World m_world;
    Experiments m_experiments;
    StationRun m_base;
    std::set<std::size_t> m_unsteady;
    std::map<std::size_t, std::size_t> m_questionOf;         // by the call's index
    std::set<std::pair<std::size_t, std::size_t>> m_proven;  // call and field
};

}  // namespace

ProofResult prove(const kvstation::Collector& collector, const Station& station, std::uint64_t seed,
                  const ProofEffort& effort) {
    return Proof(collector, station, seed, effort).result();
}

}  // namespace kvtest
