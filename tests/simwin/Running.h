#pragma once

#include <utility>

#include "simwin/machine/Machine.h"

namespace simwin {

// A machine that is current for as long as it lives.
class Running {
  public:
    explicit Running(Station station = {}) : machine(std::move(station)), m_scope(machine) {}

    Machine machine;

  private:
    Machine::Scope m_scope;
};

}  // namespace simwin
