#include "kvstation/sets/StandardInput.h"

#include <cerrno>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

#include "kvstation/platform/Errors.h"
#include "simwin/text/ReadFile.h"

namespace kvstation {
namespace {

constexpr std::size_t kInputBlock = std::size_t{1} << 16;
constexpr int kStandardInputFile = 0;

#ifdef _WIN32
auto readBlock(char* bytes, std::size_t size) {
    _setmode(kStandardInputFile, _O_BINARY);
    return _read(kStandardInputFile, bytes, static_cast<unsigned>(size));
}
#else
auto readBlock(char* bytes, std::size_t size) {
    return read(kStandardInputFile, bytes, size);
}
#endif

}  // namespace

std::size_t readSomeInput(char* bytes, std::size_t size) {
    for (;;) {
        const auto count = readBlock(bytes, size);
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR)
            throw Failure(describeFileError("standard input", "read", errno));
    }
}

std::string readStandardInput(std::size_t limit) {
    std::string bytes;
    for (std::size_t count = 1; count > 0;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + kInputBlock);
        count = readSomeInput(bytes.data() + before, kInputBlock);
        bytes.resize(before + count);
        if (bytes.size() > limit)
            throw Failure(simwin::tooLong("standard input", limit).what());
    }
    return bytes;
}

}  // namespace kvstation
