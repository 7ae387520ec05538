#include "kvstation/HiveHeader.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "kvstation/Errors.h"

namespace kvstation {
namespace {

constexpr std::size_t kHeader = 4096;
constexpr std::size_t kFirstSequence = 4;
constexpr std::size_t kSecondSequence = 8;
constexpr std::size_t kDataSize = 40;

using Start = std::array<char, 64>;

std::uint32_t numberAt(const Start& start, std::size_t place) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(start[place + i]);
    return number;
}

Start readStart(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw Failure(describeFileError(path, "read", errno));
    Start start{};
    file.read(start.data(), start.size());
    return start;
}

}  // namespace

bool checkHiveHeader(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error)
        throw Failure(path + " cannot be read: " + error.message());
    const Start start = readStart(path);
    if (std::string_view(start.data(), 4) != "regf")
        throw Failure(path + " is no registry hive: it does not begin with \"regf\"");
    const std::uintmax_t whole = kHeader + std::uintmax_t{numberAt(start, kDataSize)};
    if (size < whole)
        throw Failure(path + " is cut short: it has " + std::to_string(size) + " of " + std::to_string(whole) +
                      " bytes");
    return numberAt(start, kFirstSequence) != numberAt(start, kSecondSequence);
}

}  // namespace kvstation
