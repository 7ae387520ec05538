#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "RunningProgram.h"

namespace kvstation {
namespace {

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string quoted(const std::string& word) { return "\"" + word + "\""; }

}  // namespace

ProgramRun runProgram(const std::vector<std::string>& words) {
    const std::filesystem::path folder = std::filesystem::path(words.front()).parent_path();
    const std::filesystem::path output = folder / "output.txt";
    const std::filesystem::path errors = folder / "errors.txt";
    std::string line;
    for (const std::string& word : words)
        line += quoted(word) + " ";
    // The command processor takes one pair of quotes off the whole line.
    const int status = std::system(quoted(line + ">" + quoted(output.string()) + " 2>" + quoted(errors.string())).c_str());
    return {status, contentOf(output), contentOf(errors)};
}

}  // namespace kvstation
