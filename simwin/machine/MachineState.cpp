#include "simwin/machine/MachineState.h"

#include <algorithm>

#include "simwin/machine/HostAnswer.h"
#include "simwin/machine/Roles.h"

namespace simwin {

void* BlockTable::open(std::size_t size) {
    m_blocks.push_back(std::make_unique<char[]>(std::max<std::size_t>(size, 1)));
    return m_blocks.back().get();
}

bool BlockTable::isOpen(std::uintptr_t value) const {
    return std::any_of(m_blocks.begin(), m_blocks.end(),
                       [value](const auto& one) { return asNumber(one.get()) == value; });
}

bool BlockTable::close(std::uintptr_t value) {
    return std::erase_if(m_blocks, [value](const auto& one) { return asNumber(one.get()) == value; }) != 0;
}

void BlockTable::tell(std::vector<OpenHandle>& all, const Station&) const {
    for (const auto& block : m_blocks)
        all.push_back({m_kind, asNumber(block.get()), {}});
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
