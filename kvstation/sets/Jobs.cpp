#include "kvstation/sets/Jobs.h"

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>
#include <deque>
#include <memory>
#include <utility>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Output.h"
#include "kvstation/platform/PartProcess.h"
#include "kvstation/platform/Progress.h"
#include "kvstation/platform/StreamAside.h"
#include "kvstation/rows/Frames.h"
#include "kvstation/sets/ResultBuffer.h"
#include "kvstation/sets/StandardInput.h"

namespace kvstation {
namespace {

constexpr unsigned kMostJobs = 256;
constexpr std::size_t kPipeBlock = std::size_t{1} << 16;
// What one process was given and has not answered. It has room in a pipe, so that no write to a process waits.
constexpr std::size_t kMostTasks = 256;
constexpr std::size_t kMostTaskBytes = std::size_t{1} << 15;
// So many processes of one share that end before they are ready end the work.
constexpr unsigned kMostDeaths = 3;

constexpr char kSuccess = '+';
constexpr char kFailure = '!';

std::string taskOf(const Source& source) {
    return source.name + '\0' + source.path;
}

Source sourceOf(std::string_view task) {
    const std::size_t end = std::min(task.find('\0'), task.size() - 1);
    return {std::string(task.substr(0, end)), std::string(task.substr(end + 1)), {}};
}

std::string answerOf(const Source& source, const Perform& perform) {
    try {
        if (!source.wrong.empty())
            return kFailure + source.wrong;
        return kSuccess + perform(source);
    } catch (const std::exception& error) {
        return kFailure + std::string(error.what());
    }
}

// Standard input is this process' own, and what is wrong needs no process.
bool isForPart(const Source& source) {
    return source.wrong.empty() && source.path != kStandardInput;
}

// One of the processes and its share of the sources: each `step`th from `first` on.
class Part {
  public:
    Part(const std::vector<Source>& sources, std::size_t first, std::size_t step)
        : m_sources(sources), m_next(first), m_step(step) {}

    void give() {
        if (m_given.size() > kMostTasks / 2)
            return;
        std::string tasks;
        for (; m_next < m_sources.size() && m_given.size() < kMostTasks; m_next += m_step) {
            if (!m_given.empty() && m_next < m_oneByOneBefore)
                break;
            if (!isForPart(m_sources[m_next]))
                continue;
            std::string task = taskOf(m_sources[m_next]);
            if (!m_given.empty() && m_givenBytes + task.size() > kMostTaskBytes)
                break;
            appendFrame(tasks, task);
            m_givenBytes += task.size();
            m_given.push_back({m_next, task.size()});
        }
        if (tasks.empty())
            return;
        if (!m_process)
            m_process = std::make_unique<PartProcess>();
        m_process->write(tasks);  // one that has ended is noticed at its answer
    }

    // To the source that was given first.
    std::string answer() {
        for (;;) {
            if (const auto frame = m_answers.next()) {
                if (!std::exchange(m_isReady, true))
                    continue;
                m_givenBytes -= m_given.front().bytes;
                m_given.pop_front();
                return std::string(*frame);
            }
            const std::size_t count = m_process->read(m_block.data(), m_block.size());
            m_answers.add(std::string_view(m_block).substr(0, count));
            if (count > 0)
                continue;
            if (m_isReady && m_given.size() == 1)
                return bury();
            countDeath();
            takeBack();
            give();
        }
    }

  private:
    struct Given {
        std::size_t source;
        std::size_t bytes;
    };

    // The process ended over one of several sources, and its last answers went with it: another one gets them one by
    // one, which shows over which.
    void takeBack() {
        m_oneByOneBefore = m_given.back().source + 1;
        m_next = m_given.front().source;
        forget();
    }

    std::string bury() {
        const Source& source = m_sources[m_given.front().source];
        const std::string ending = m_process->ending();
        forget();
        return kFailure + source.path + ": the process that was at it ended with " + ending;
    }

    void countDeath() {
        if (!m_isReady && ++m_deaths == kMostDeaths)
            throw Failure("the tool's own processes end at once, with " + m_process->ending());
    }

    void forget() {
        m_isReady = false;
        m_given.clear();
        m_givenBytes = 0;
        m_answers = {};
        m_process.reset();
    }

    const std::vector<Source>& m_sources;
    std::size_t m_next;  // that is not given yet
    std::size_t m_step;
    std::deque<Given> m_given;
    std::size_t m_givenBytes = 0;
    std::size_t m_oneByOneBefore = 0;
    bool m_isReady = false;  // the process has greeted
    unsigned m_deaths = 0;
    FrameReader m_answers;
    std::string m_block = std::string(kPipeBlock, '\0');
    std::unique_ptr<PartProcess> m_process;
};

std::size_t numberOfParts(const JobOptions& options, std::size_t sources) {
    return std::clamp<std::size_t>(options.jobs != 0 ? options.jobs : std::min(processors(), kMostJobs), 1,
                                   std::max<std::size_t>(sources, 1));
}

}  // namespace

void addJobs(CLI::App& command, JobOptions& options) {
    command
        .add_option("--jobs", options.jobs,
                    "Of several: in N processes at a time; unless given, in one for each processor")
        ->type_name("N")
        ->check(CLI::Range(1u, kMostJobs));
}

Tally performAll(const std::vector<Source>& sources, const Work& work, const JobOptions& options) {
    Tally tally;
    const Progress progress(work.what);
    const bool showsProgress = !work.prints || !standardOutput().isTerminal;
    std::deque<Part> parts;
    const std::size_t count = numberOfParts(options, sources.size());
    for (std::size_t i = 0; i < count; ++i)
        parts.emplace_back(sources, i, count).give();
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const Source& source = sources[i];
        Part& part = parts[i % count];
        const std::string answer = isForPart(source) ? part.answer() : answerOf(source, work.perform);
        part.give();
        if (answer.starts_with(kSuccess)) {
            work.take(source, std::string_view(answer).substr(1));
        } else {
            progress.clear();
            reportError(std::string_view(answer).substr(1));
            ++tally.failed;
        }
        ++tally.done;
        if (showsProgress)
            progress.tell(tally.done, sources.size(), tally.failed);
    }
    return tally;
}

int statusOf(const Tally& tally) {
    return tally.failed == 0 ? kExitSuccess : kExitFailure;
}

int printAll(const Places& places, SourceKind kind, const std::string& what, const Perform& perform,
             const JobOptions& options) {
    if (isPart())
        return servePart(perform);
    ResultBuffer output;
    const Tally tally = performAll(
        sourcesOf(places, kind),
        {.what = what, .perform = perform, .take = [&](const Source&, std::string_view text) { output.add(text); }},
        options);
    output.flush();
    return statusOf(tally);
}

int servePart(const Perform& perform) {
    endQuietlyInACrash();
    const StreamAside output(kStandardOutput);  // what a library prints is no answer
    FrameReader tasks;
    std::string answers;
    appendFrame(answers, {});  // ready
    std::string block(kPipeBlock, '\0');
    for (;;) {
        const auto task = tasks.next();
        if (task)
            appendFrame(answers, answerOf(sourceOf(*task), perform));
        // Whoever waits for an answer gets it before this process waits for a task.
        if (!task || answers.size() >= kPipeBlock) {
            if (!writeTo(output.kept(), answers))
                return kExitFailure;
            answers.clear();
        }
        if (task)
            continue;
        const std::size_t count = readSomeInput(block.data(), block.size());
        if (count == 0)
            return kExitSuccess;
        tasks.add(std::string_view(block).substr(0, count));
    }
}

}  // namespace kvstation
