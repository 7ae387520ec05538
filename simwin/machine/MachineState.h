// What the answers keep about a machine between calls, each concern its own.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "simwin/machine/HandleTable.h"
#include "simwin/machine/Libraries.h"
#include "simwin/station/Station.h"

namespace simwin {

// Blocks whose handle is their address.
class BlockTable {
  public:
    explicit BlockTable(HandleKind kind) : m_kind(kind) {}

    // Zeroed.
    void* open(std::size_t size);
    bool isOpen(std::uintptr_t value) const;
    bool close(std::uintptr_t value);
    void tell(std::vector<OpenHandle>& all, const Station& station) const;

  private:
    HandleKind m_kind;
    std::vector<std::unique_ptr<char[]>> m_blocks;
};

struct GlobalBlock {
    std::unique_ptr<char[]> memory;  // null: of no bytes
    std::size_t size = 0;
    int locks = 0;
};

// What is open, a table for each kind, in the order of the kinds. Its tell() appends what is open in it.
struct HandleTables {
    HandleTable<KeyId> keys{HandleKind::RegistryKey,
                            [](auto& station, auto& key) { return station.registry.path(key); }};
    LibraryTable libraries;
    HandleTable<std::uint32_t> processes{HandleKind::Process,
                                         [](auto&, auto& id) { return "process " + std::to_string(id); }};
    HandleTable<std::uint32_t> tokens{
        HandleKind::Token, [](auto&, auto& process) { return "token of process " + std::to_string(process); }};
    HandleTable<std::string> finds{HandleKind::Find, [](auto&, auto& asked) { return asked; }};
    HandleTable<GlobalBlock> globalBlocks{HandleKind::GlobalBlock, [](auto&, auto&) { return std::string(); }};
    BlockTable fixedBlocks{HandleKind::LocalBlock};  // LocalAlloc's
    BlockTable netBuffers{HandleKind::NetBuffer};
    BlockTable citrixBuffers{HandleKind::CitrixBuffer};
};

// All of them: one more does not compile until the first line has it, and belongs in both.
inline auto tablesOf(const HandleTables& tables) {
    const auto& [keys, libraries, processes, tokens, finds, globals, locals, nets, citrix] = tables;
    return std::tie(keys, libraries, processes, tokens, finds, globals, locals, nets, citrix);
}

// An answer of the resolver; like the real one it stands until the next.
struct HostAnswer;

struct MachineState : HandleTables {
    MachineState();
    ~MachineState();

    std::string lastGlobalBlock;  // what the one that was freed last held
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
