#include "simwin/machine/VersionResource.h"

#include <algorithm>
#include <cstdint>

#include "framework/FileVersion.h"

namespace simwin {
namespace {

constexpr std::string_view kKey = "VS_VERSION_INFO";
constexpr std::size_t kHeaderSize = 6;  // the block's length, its value's length, its type

void appendWord(std::string& block, std::size_t word) {
    block.push_back(static_cast<char>(static_cast<unsigned char>(word)));
    block.push_back(static_cast<char>(static_cast<unsigned char>(word >> 8)));
}

std::size_t wordAt(std::string_view block, std::size_t offset) {
    return static_cast<unsigned char>(block[offset]) |
           static_cast<std::size_t>(static_cast<unsigned char>(block[offset + 1])) << 8;
}

std::size_t alignedTo4(std::size_t offset) {
    return (offset + 3) & ~std::size_t{3};
}

VS_FIXEDFILEINFO fixedInfo(const FileVersion& version) {
    VS_FIXEDFILEINFO info{};
    info.dwSignature = 0xFEEF04BD;
    info.dwStrucVersion = 0x00010000;
    info.dwFileVersionMS = static_cast<DWORD>(version[0]) << 16 | version[1];
    info.dwFileVersionLS = static_cast<DWORD>(version[2]) << 16 | version[3];
    info.dwProductVersionMS = info.dwFileVersionMS;
    info.dwProductVersionLS = info.dwFileVersionLS;
    info.dwFileFlagsMask = 0x3F;
    return info;
}

// The offset behind a wide text's terminator, or none when the block ends before it.
std::optional<std::size_t> behindText(std::string_view block, std::size_t offset) {
    for (; offset + 1 < block.size(); offset += 2)
        if (wordAt(block, offset) == 0)
            return offset + 2;
    return std::nullopt;
}

}  // namespace

std::string makeVersionResource(const FileVersion& version) {
    const VS_FIXEDFILEINFO info = fixedInfo(version);
    std::string block;
    appendWord(block, 0);
    appendWord(block, sizeof info);
    appendWord(block, 0);
    for (const char letter : kKey)
        appendWord(block, static_cast<unsigned char>(letter));
    appendWord(block, 0);
    block.resize(alignedTo4(block.size()));
    block.append(reinterpret_cast<const char*>(&info), sizeof info);
    block[0] = static_cast<char>(static_cast<unsigned char>(block.size()));
    return block;
}

std::optional<VersionValue> findRootValue(std::string_view block) {
    if (block.size() < kHeaderSize)
        return std::nullopt;
    block = block.substr(0, wordAt(block, 0));
    const std::optional<std::size_t> behindKey = behindText(block, kHeaderSize);
    if (!behindKey)
        return std::nullopt;
    const std::size_t length = wordAt(block, 2);
    const std::size_t offset = alignedTo4(*behindKey);
    if (length == 0 || offset + length > block.size())
        return std::nullopt;
    return VersionValue{offset, length};
}

std::optional<FileVersion> versionIn(std::string_view rootValue) {
    if (rootValue.size() < kFileVersionSize)
        return std::nullopt;
    VS_FIXEDFILEINFO info{};
    rootValue.copy(reinterpret_cast<char*>(&info), kFileVersionSize);
    return FileVersion{HIWORD(info.dwFileVersionMS), LOWORD(info.dwFileVersionMS), HIWORD(info.dwFileVersionLS),
                       LOWORD(info.dwFileVersionLS)};
}

}  // namespace simwin
