#include "simwin/machine/Recording.h"

#include "simwin/machine/Machine.h"

namespace simwin {

Recording::Recording(std::shared_ptr<const Station> station) : m_station(std::move(station)) {}

Recording::~Recording() = default;

void Recording::replay() {
    Machine machine(m_station);
    replay(machine);
}

void Recording::replay(Machine& machine) {
    const Machine::Scope scope(machine);
    for (const Call& call : m_calls)
        call(m_state);
}

std::size_t Recording::newSlot(std::uintptr_t value) {
    const std::size_t slot = m_state.values.size();
    m_state.values.push_back(0);
    m_slots[value] = slot;
    return slot;
}

std::size_t Recording::slotOf(std::uintptr_t value) const {
    const auto found = m_slots.find(value);
    return found != m_slots.end() ? found->second : kNoSlot;
}

}  // namespace simwin
