// The registry's hives: their names, and the predefined handles that stand for them.
#pragma once

#include <array>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace simwin {

enum class Hive : std::uint8_t {
    LocalMachine,
    CurrentUser,
    Users,
    CurrentConfig,
    DynData,
    PerformanceData,
    ClassesRoot,
};

struct NamedHive {
    Hive hive;
    std::uint32_t handle;  // Windows widens it with its sign, and looks at this half of a handle alone
    std::string_view name;
    std::string_view shortName;  // what people write
};

// In the order of their numbers.
inline constexpr NamedHive kHives[] = {{Hive::LocalMachine, 0x80000002, "HKEY_LOCAL_MACHINE", "HKLM"},
                                       {Hive::CurrentUser, 0x80000001, "HKEY_CURRENT_USER", "HKCU"},
                                       {Hive::Users, 0x80000003, "HKEY_USERS", "HKU"},
                                       {Hive::CurrentConfig, 0x80000005, "HKEY_CURRENT_CONFIG", "HKCC"},
                                       {Hive::DynData, 0x80000006, "HKEY_DYN_DATA", "HKDD"},
                                       {Hive::PerformanceData, 0x80000004, "HKEY_PERFORMANCE_DATA", "HKPD"},
                                       {Hive::ClassesRoot, 0x80000000, "HKEY_CLASSES_ROOT", "HKCR"}};

// Those with keys of their own; HKEY_CLASSES_ROOT stands for keys of another.
constexpr std::array<Hive, std::size(kHives) - 1> ownHives() {
    std::array<Hive, std::size(kHives) - 1> own{};
    for (std::size_t i = 0; i < own.size(); ++i)
        own[i] = kHives[i].hive;
    return own;
}
inline constexpr auto kOwnHives = ownHives();
static_assert(kHives[kOwnHives.size()].hive == Hive::ClassesRoot);

constexpr const NamedHive& named(Hive hive) {
    return kHives[static_cast<std::size_t>(hive)];
}

// That of a predefined handle; null of any other.
constexpr const NamedHive* hiveOfHandle(std::uintptr_t handle) {
    for (const NamedHive& hive : kHives)
        if (hive.handle == static_cast<std::uint32_t>(handle))
            return &hive;
    return nullptr;
}

}  // namespace simwin
