#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>
#include <vector>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/PartProcess.h"
#include "simwin/text/ReadFile.h"

extern char** environ;

namespace kvstation {
namespace {

constexpr const char* kPartVariable = "KVSTATION_PART";
char kPartSetting[] = "KVSTATION_PART=1";
constexpr std::size_t kLongestCommandLine = std::size_t{16} << 20;

class File {
  public:
    explicit File(int number) : m_number(number) {}
    File(File&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    File& operator=(File&&) = delete;
    ~File() { close(); }

    int number() const { return m_number; }
    void close() {
        if (m_number != -1)
            ::close(m_number);
        m_number = -1;
    }

  private:
    int m_number;
};

struct Pipe {
    File output;  // to read from
    File input;
};

// No process that is started later holds its ends.
Pipe openPipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw Failure(describeLibraryError("pipe2", "", errno));
    return {File(ends[0]), File(ends[1])};
}

// A pipe whose writer is told that nobody reads any more: a write to a true one would end this process.
Pipe openSockets() {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw Failure(describeLibraryError("socketpair", "", errno));
    return {File(ends[0]), File(ends[1])};
}

// A list of texts that ends with null, as processes are given them.
std::vector<char*> pointersTo(std::string& texts) {
    std::vector<char*> list;
    for (std::size_t i = 0; i < texts.size(); i = texts.find('\0', i) + 1)
        list.push_back(&texts[i]);
    list.push_back(nullptr);
    return list;
}

std::vector<char*> environmentOfPart() {
    std::vector<char*> list;
    for (char** variable = environ; *variable != nullptr; ++variable)
        list.push_back(*variable);
    list.push_back(kPartSetting);
    list.push_back(nullptr);
    return list;
}

class Spawning {
  public:
    Spawning(const Pipe& input, const Pipe& output) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, input.output.number(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, output.input.number(), STDOUT_FILENO);
    }
    Spawning(const Spawning&) = delete;
    Spawning& operator=(const Spawning&) = delete;
    ~Spawning() { posix_spawn_file_actions_destroy(&m_actions); }

    pid_t start() const {
        std::string words = simwin::readFile("/proc/self/cmdline", "the own command line", kLongestCommandLine);
        std::vector<char*> variables = environmentOfPart();
        pid_t process = 0;
        const int error =
            posix_spawn(&process, "/proc/self/exe", &m_actions, nullptr, pointersTo(words).data(), variables.data());
        if (error != 0)
            throw Failure(describeLibraryError("posix_spawn", "a process of the tool", error));
        return process;
    }

  private:
    posix_spawn_file_actions_t m_actions{};
};

std::string describeEnding(int status) {
    return WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                               : "status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

struct PartProcess::Started {
    File input;  // this process' ends
    File output;
    pid_t process;
    std::string ending;

    void wait() {
        int status = 0;
        while (ending.empty())
            if (waitpid(process, &status, 0) == process || errno != EINTR)
                ending = describeEnding(status);
    }
};

bool isPart() {
    return std::getenv(kPartVariable) != nullptr;
}

void endQuietlyInACrash() {}

unsigned processors() {
    cpu_set_t own;
    CPU_ZERO(&own);
    return sched_getaffinity(0, sizeof own, &own) == 0 ? static_cast<unsigned>(std::max(CPU_COUNT(&own), 1)) : 1;
}

PartProcess::PartProcess() {
    Pipe input = openSockets();
    Pipe output = openPipe();
    const pid_t process = Spawning(input, output).start();
    m_started = std::make_unique<Started>(Started{std::move(input.input), std::move(output.output), process, {}});
}

PartProcess::~PartProcess() {
    m_started->input.close();
    m_started->output.close();
    m_started->wait();
}

bool PartProcess::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = send(m_started->input.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::size_t PartProcess::read(char* bytes, std::size_t size) {
    for (;;) {
        const ssize_t count = ::read(m_started->output.number(), bytes, size);
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR)
            return 0;
    }
}

std::string PartProcess::ending() {
    m_started->input.close();
    m_started->wait();
    return m_started->ending;
}

}  // namespace kvstation
