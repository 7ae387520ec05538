#include "simwin/MachineState.h"

#include <algorithm>

#include "simwin/HostAnswer.h"

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

MachineState::MachineState() = default;
MachineState::~MachineState() = default;

}  // namespace simwin
