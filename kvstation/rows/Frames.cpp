#include "kvstation/rows/Frames.h"

#include <cstdint>
#include <cstring>

namespace kvstation {
namespace {

using FrameLength = std::uint32_t;

// The first text, which goes on behind its length; none where it is not there whole.
std::optional<std::string_view> firstFrame(std::string_view bytes) {
    FrameLength length = 0;
    if (bytes.size() < sizeof length)
        return std::nullopt;
    std::memcpy(&length, bytes.data(), sizeof length);
    bytes.remove_prefix(sizeof length);
    return bytes.size() < length ? std::nullopt : std::optional(bytes.substr(0, length));
}

}  // namespace

void appendFrame(std::string& bytes, std::string_view text) {
    const auto length = static_cast<FrameLength>(text.size());
    char place[sizeof length];
    std::memcpy(place, &length, sizeof length);
    bytes.append(place, sizeof place);
    bytes += text;
}

std::vector<std::string_view> framesIn(std::string_view bytes) {
    std::vector<std::string_view> frames;
    while (const auto frame = firstFrame(bytes)) {
        frames.push_back(*frame);
        bytes.remove_prefix(sizeof(FrameLength) + frame->size());
    }
    return frames;
}

std::optional<std::string_view> FrameReader::next() {
    const auto frame = firstFrame(std::string_view(m_bytes).substr(m_read));
    if (frame) {
        m_read += sizeof(FrameLength) + frame->size();
    } else {
        m_bytes.erase(0, m_read);
        m_read = 0;
    }
    return frame;
}

}  // namespace kvstation
