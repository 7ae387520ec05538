// The platform calls of a run, kept so that they can be made again with no program around them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "simwin/station/Station.h"

namespace simwin {

class Machine;

// Handles and addresses of one replay, by the slots that the recording gave them.
struct ReplayState {
    std::vector<std::uintptr_t> values;
};

// Each call is kept with copies of what it read and with room of its own for what it writes. Handles and blocks that
// one call gave and another took are passed on in the same way when the calls are made again. Fill it with
// Machine::record. A machine that relays to real functions records calls of these: they are then made themselves,
// without the machine between.
class Recording {
  public:
    explicit Recording(std::shared_ptr<const Station> station);
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
    ~Recording();

    std::size_t size() const noexcept { return m_calls.size(); }

    // Makes the calls again on a fresh machine of the same station.
    void replay();
    // Makes them again on a machine of the caller's, as often as wanted; it is current meanwhile.
    void replay(Machine& machine);

    // The rest is for the answers.

    using Call = std::function<void(ReplayState&)>;
    void add(Call call) { m_calls.push_back(std::move(call)); }

    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);
    // A slot for a handle or address that a call gave.
    std::size_t newSlot(std::uintptr_t value);
    // The slot of one that a call takes, or kNoSlot for one that no call gave.
    std::size_t slotOf(std::uintptr_t value) const;

  private:
    std::shared_ptr<const Station> m_station;
    std::vector<Call> m_calls;
    std::unordered_map<std::uintptr_t, std::size_t> m_slots;
    ReplayState m_state;
};

}  // namespace simwin
