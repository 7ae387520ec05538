// replay FOLDER: runs the kept inputs of a fuzzer one after the other, without the fuzzer's engine.
//
// Those that the fuzzed reader refuses have names that begin with "refused-", and no others have. So an input that a
// change of a format made worthless is told.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/Check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argumentCount, char*** arguments);

namespace {

std::vector<std::uint8_t> contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> filesOf(const char* folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

bool isRead(const std::vector<std::uint8_t>& input) {
    kvfuzz::wasRefused = false;
    LLVMFuzzerTestOneInput(input.data(), input.size());
    return !kvfuzz::wasRefused;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fputs("replay: which folder?\n", stderr);
        return 2;
    }
    if (LLVMFuzzerInitialize != nullptr)
        LLVMFuzzerInitialize(&argumentCount, &arguments);
    const std::vector<std::filesystem::path> files = filesOf(arguments[1]);
    bool areAsNamed = true;
    for (const std::filesystem::path& file : files) {
        const std::string name = file.filename().string();
        // Told before the run, so that a crash names its input.
        std::fprintf(stderr, "%s\n", name.c_str());
        const bool isRefused = !isRead(contentOf(file));
        if (isRefused == name.starts_with("refused-"))
            continue;
        std::fprintf(stderr, "  is %s, which its name does not say\n", isRefused ? "refused" : "read");
        areAsNamed = false;
    }
    std::printf("%zu inputs\n", files.size());
    return files.empty() || !areAsNamed ? 1 : 0;
}
