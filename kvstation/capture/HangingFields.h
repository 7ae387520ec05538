// The fields that hang on each question of a collection.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "kvstation/experiments/Experiments.h"
#include "simwin/machine/CallObserver.h"

namespace kvstation {

// By what was asked and for the how-manieth time, so that what experiments found in a replay holds for the calls of the
// collection that is replayed. Feed it the calls in their order.
class HangingFields {
  public:
    explicit HangingFields(const Experiments& experiments);

    // The names of the fields and published variables that hang on the call, which is the next of the collection.
    std::vector<std::string> next(const simwin::ObservedCall& call);

  private:
    using Asked = std::pair<std::string, std::size_t>;

    static std::string questionOf(const simwin::ObservedCall& call);

    std::map<Asked, std::vector<std::string>> m_names;
    std::map<std::string, std::size_t> m_count;
};

}  // namespace kvstation
