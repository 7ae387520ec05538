// What the answers keep about a machine between calls, each concern its own.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "simwin/machine/HandleTable.h"
#include "simwin/station/RegistryTree.h"

namespace simwin {

// Blocks whose handle is their address.
class BlockTable {
  public:
    // Zeroed.
    void* open(std::size_t size);
    bool close(const void* block);
    bool isOpen(const void* block) const;
    const std::vector<std::unique_ptr<char[]>>& blocks() const { return m_blocks; }

  private:
    std::vector<std::unique_ptr<char[]>> m_blocks;
};

struct GlobalBlock {
    std::unique_ptr<char[]> memory;  // null: of no bytes
    std::size_t size = 0;
    int locks = 0;
};

// An answer of the resolver; like the real one it stands until the next.
struct HostAnswer;

struct MachineState {
    MachineState();
    ~MachineState();

    HandleTable<KeyId> keys{HandleKind::RegistryKey};
    HandleTable<std::uint32_t> processes{HandleKind::Process};  // their ids
    HandleTable<std::uint32_t> tokens{HandleKind::Token};       // their processes' ids
    HandleTable<std::string> finds{HandleKind::Find};           // the path asked for
    HandleTable<GlobalBlock> globalBlocks{HandleKind::GlobalBlock};
    std::string lastGlobalBlock;  // what the one that was freed last held
    BlockTable fixedBlocks;       // LocalAlloc's
    BlockTable netBuffers;
    BlockTable citrixBuffers;

    std::vector<unsigned> libraryLoads;  // by the library's number in the call table
    std::vector<KeyId> deniedKeys;

    // Variables set since the start; none in the value: removed.
    struct SetVariable {
        std::string name;
        std::optional<std::string> value;
    };
    std::vector<SetVariable> variables;

    // Sizes of the version resources that callers hold, by their address.
    std::unordered_map<const void*, std::size_t> versionBlocks;

    std::vector<std::uint8_t> resetLanas;
    std::unique_ptr<HostAnswer> hostAnswer;
};

}  // namespace simwin
