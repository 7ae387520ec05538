// replay FOLDER: runs the kept inputs of a fuzzer one after the other, without the fuzzer's engine.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

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

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fputs("replay: which folder?\n", stderr);
        return 2;
    }
    if (LLVMFuzzerInitialize != nullptr)
        LLVMFuzzerInitialize(&argumentCount, &arguments);
    const std::vector<std::filesystem::path> files = filesOf(arguments[1]);
    for (const std::filesystem::path& file : files) {
        // Told before the run, so that a crash names its input.
        std::fprintf(stderr, "%s\n", file.filename().c_str());
        const std::vector<std::uint8_t> input = contentOf(file);
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
