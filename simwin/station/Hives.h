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
    std::string_view name;
    std::string_view shortName;  // what people write
    std::uint32_t handle;        // Windows widens it with its sign, and looks at this half of a handle alone
};

// In the order of their numbers.
inline constexpr NamedHive kHives[] = {{Hive::LocalMachine, "HKEY_LOCAL_MACHINE", "HKLM", 0x80000002},
                                       {Hive::CurrentUser, "HKEY_CURRENT_USER", "HKCU", 0x80000001},
                                       {Hive::Users, "HKEY_USERS", "HKU", 0x80000003},
                                       {Hive::CurrentConfig, "HKEY_CURRENT_CONFIG", "HKCC", 0x80000005},
                                       {Hive::DynData, "HKEY_DYN_DATA", "HKDD", 0x80000006},
                                       {Hive::PerformanceData, "HKEY_PERFORMANCE_DATA", "HKPD", 0x80000004},
                                       {Hive::ClassesRoot, "HKEY_CLASSES_ROOT", "HKCR", 0x80000000}};

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
