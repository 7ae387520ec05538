// A fixture for tests that run on a simulated machine, and one whole collection on it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/String.h"
#include "include/kvcstat.h"
#include "simwin/machine/Machine.h"

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

// A record with a pattern in every byte, and room behind it that must keep the pattern.
class PatternedRecord {
  public:
    static constexpr char kPattern = '\xA5';

    char* data() { return bytes.data(); }
    void Clear() { std::memset(bytes.data(), 0, KVCSTAT_RECORD_SIZE); }

    std::string At(std::size_t offset, std::size_t count) const { return {bytes.data() + offset, count}; }
    bool IsUntouched(std::size_t offset, std::size_t count) const {
        return At(offset, count) == std::string(count, kPattern);
    }
    bool IsUntouchedBehindTheRecord() const {
        return IsUntouched(KVCSTAT_RECORD_SIZE, bytes.size() - KVCSTAT_RECORD_SIZE);
    }
    // Text of a field up to its first zero.
    std::string Text(std::size_t offset, std::size_t width) const {
        const std::string field = At(offset, width);
        return field.substr(0, field.find('\0'));
    }
    std::uint32_t Number(std::size_t offset) const {
        std::uint32_t number = 0;
        std::memcpy(&number, bytes.data() + offset, sizeof number);
        return number;
    }

  private:
    std::vector<char> bytes = std::vector<char>(KVCSTAT_RECORD_SIZE + 1024, kPattern);
};

}  // namespace kvtest
