// A fixture for tests that run on a simulated machine, and one whole collection on it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/String.h"
#include "include/kvcstat.h"
#include "simwin/machine/Machine.h"
#include "tests/kvcstat/Keys.h"

namespace kvtest {

inline std::string Str(const CString& text) {
    return static_cast<const char*>(text);
}

// A test describes `station` and starts the machine; from then on its calls are answered.
class MachineTest : public ::testing::Test {
  protected:
    simwin::Machine& Start() {
        // A machine that was started before lives on, because texts on its heap may.
        scope.reset();
        if (machine != nullptr)
            earlier.push_back(std::move(machine));
        machine = std::make_unique<simwin::Machine>(station);
        scope = std::make_unique<simwin::Machine::Scope>(*machine);
        return *machine;
    }

    // The last value that the module set for a variable.
    std::optional<std::string> VariableSet(std::string_view name) const {
        for (const simwin::Variable& variable : machine->variablesSet()) {
            if (variable.name == name)
                return variable.value;
        }
        return std::nullopt;
    }

    // Nothing was closed twice or never opened, and nothing of these kinds stays open.
    void ExpectEverythingClosed() const {
        EXPECT_THAT(machine->misuses(), ::testing::IsEmpty());
        for (const simwin::OpenHandle& handle : machine->openHandles())
            ADD_FAILURE() << "open: " << handle.what;
    }

    simwin::Station station;
    std::vector<std::unique_ptr<simwin::Machine>> earlier;
    std::unique_ptr<simwin::Machine> machine;
    std::unique_ptr<simwin::Machine::Scope> scope;
};

}  // namespace kvtest
