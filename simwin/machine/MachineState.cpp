#include "simwin/machine/MachineState.h"

#include <algorithm>

#include "simwin/machine/HostAnswer.h"

namespace simwin {

void* BlockTable::open(std::size_t size) {
    m_blocks.push_back(std::make_unique<char[]>(std::max<std::size_t>(size, 1)));
    return m_blocks.back().get();
}

bool BlockTable::close(const void* block) {
    return std::erase_if(m_blocks, [block](const auto& one) { return one.get() == block; }) != 0;
}

bool BlockTable::isOpen(const void* block) const {
    return std::any_of(m_blocks.begin(), m_blocks.end(), [block](const auto& one) { return one.get() == block; });
}

std::vector<std::string> addressesOf(const winsock::HostEntry& answer) {
    constexpr std::size_t kMostAddresses = 64;
    constexpr int kLongestAddress = 16;
    const auto length = static_cast<std::size_t>(std::clamp<int>(answer.h_length, 0, kLongestAddress));
    std::vector<std::string> addresses;
    for (char** place = answer.h_addr_list; place != nullptr && *place != nullptr; ++place)
        if (addresses.size() < kMostAddresses)
            addresses.emplace_back(*place, length);
    return addresses;
}

MachineState::MachineState() = default;
MachineState::~MachineState() = default;

}  // namespace simwin
