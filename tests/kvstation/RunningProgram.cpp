#include "tests/kvstation/RunningProgram.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace kvstation {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using TemporaryFile = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void become(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(arguments.front(), arguments.data());
    _exit(127);
}

std::string contentOf(std::FILE* file) {
    std::rewind(file);
    std::string content;
    char block[4096];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file))
        content.append(block, count);
    return content;
}

int statusOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void addToEnvironment(const std::vector<std::string>& variables) {
    for (const std::string& variable : variables) {
        const std::size_t equals = variable.find('=');
        setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
    }
}

// The end of a terminal's other side reads as an error.
std::string readToEnd(int descriptor) {
    std::string content;
    char block[4096];
    for (ssize_t count; (count = read(descriptor, block, sizeof block)) > 0;)
        content.append(block, static_cast<std::size_t>(count));
    return content;
}

}  // namespace

ProgramRun runProgram(const std::vector<std::string>& words) {
    const TemporaryFile output(std::tmpfile());
    const TemporaryFile errors(std::tmpfile());
    const pid_t child = fork();
    if (child == 0) {
        dup2(fileno(output.get()), STDOUT_FILENO);
        dup2(fileno(errors.get()), STDERR_FILENO);
        become(words);
    }
    const int status = statusOf(child);
    return {status, contentOf(output.get()), contentOf(errors.get())};
}

ProgramRun runOnTerminal(const std::vector<std::string>& words, unsigned short columns,
                         const std::vector<std::string>& variables) {
    const winsize size{.ws_row = 25, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        unsetenv("NO_COLOR");
        addToEnvironment(variables);
        become(words);
    }
    const std::string output = readToEnd(terminal);
    close(terminal);
    return {statusOf(child), output, {}};
}

}  // namespace kvstation
