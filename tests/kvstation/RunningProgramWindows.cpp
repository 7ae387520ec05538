#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "RunningProgram.h"
#include "framework/Windows.h"

namespace kvstation {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path, std::ios::openmode mode) {
    std::ifstream file(path, mode);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string quoted(const std::string& word) {
    return "\"" + word + "\"";
}

}  // namespace

ProgramRun runProgram(const std::vector<std::string>& words) {
    const std::string place = (fs::temp_directory_path() / std::to_string(GetCurrentProcessId())).string();
    const std::string output = place + "-output.txt";
    const std::string errors = place + "-errors.txt";
    std::string line;
    for (const std::string& word : words)
        line += quoted(word) + " ";
    // The command processor takes one pair of quotes off the whole line.
    const int status = std::system(quoted(line + ">" + quoted(output) + " 2>" + quoted(errors)).c_str());
    // Standard output is to have the result's very bytes; standard error is text, whose lines end as Windows' do.
    ProgramRun run{status, contentOf(output, std::ios::binary), contentOf(errors, std::ios::in)};
    fs::remove(output);
    fs::remove(errors);
    return run;
}

}  // namespace kvstation
