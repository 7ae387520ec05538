#include "kvstation/cause/WhatIf.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <charconv>
#include <optional>

#include "kvstation/calls/CallRows.h"
#include "kvstation/experiments/ModuleRun.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/text/Similar.h"
#include "simwin/calls/CallTable.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace kvstation {
namespace {

using simwin::RegistryType;
using simwin::RegistryValue;
using simwin::Station;

constexpr std::uint32_t kAccessDenied = 5;

[[noreturn]] void fail(const char* option, const std::string& given, const std::string& expected) {
    throw WrongUse(std::string(option) + " '" + given + "': " + expected);
}

std::string narrow(const char* option, const std::string& utf8) {
    simwin::Utf8Error error{};
    const std::optional<std::string> bytes = simwin::fromUtf8(utf8, error);
    if (!bytes)
        fail(option, utf8,
             "holds a character that code page " + std::to_string(simwin::codePageInForce()) + " does not have");
    return *bytes;
}

void checkVariableName(const char* option, const std::string& given, const std::string& name) {
    if (name.empty() || name.find('=') != std::string::npos)
        fail(option, given,
             "expected the name of a variable" + std::string(option == std::string_view("--set")
                                                                 ? ", '=' and its value, such as KVStationType=1"
                                                                 : ", such as KVStationType"));
}

void unset(Station& station, const std::string& name) {
    std::erase_if(station.environment,
                  [&](const simwin::Variable& one) { return simwin::equalNoCase(one.name, name); });
}

void applySet(Station& station, const std::string& given) {
    const std::size_t equals = given.find('=');
    if (equals == std::string::npos)
        checkVariableName("--set", given, "");
    const std::string name = narrow("--set", given.substr(0, equals));
    checkVariableName("--set", given, name);
    unset(station, name);
    station.environment.push_back({name, narrow("--set", given.substr(equals + 1))});
}

std::string withWholeHive(const std::string& path) {
    for (const simwin::NamedHive& hive : simwin::kHives)
        if (const auto rest = simwin::restBelow(path, hive.shortName))
            return std::string(hive.name) + (rest->empty() ? "" : "\\") + std::string(*rest);
    return path;
}

constexpr const char* kValueForm =
    "expected HIVE\\KEY\\NAME=TEXT, such as 'HKLM\\SOFTWARE\\Quorvel\\Key\\Name=text'; other types as =dword:1, "
    "=hex:0A 0B, =expand:%SystemRoot% and =multi:one|two";

std::optional<std::string> afterPrefix(const std::string& text, std::string_view prefix) {
    return text.starts_with(prefix) ? std::optional(text.substr(prefix.size())) : std::nullopt;
}

std::string hexBytes(const std::string& given, const std::string& text) {
    std::string bytes;
    std::string digits = text;
    std::erase_if(digits, [](char one) { return one == ' ' || one == ',' || one == '-'; });
    if (digits.size() % 2 != 0)
        fail("--value", given, "hex: takes bytes of two hexadecimal digits each");
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const std::optional<char> byte = simwin::byteOfHex(std::string_view(digits).substr(i, 2));
        if (!byte)
            fail("--value", given, "hex: takes bytes of two hexadecimal digits each");
        bytes += *byte;
    }
    return bytes;
}

std::uint32_t dword(const std::string& given, const std::string& text) {
    const bool isHex = text.starts_with("0x");
    std::uint32_t number = 0;
    const char* begin = text.data() + (isHex ? 2 : 0);
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), number, isHex ? 16 : 10);
    if (error != std::errc() || begin == end || end != text.data() + text.size())
        fail("--value", given, "dword: takes a whole number up to 4294967295, also as 0x1F");
    return number;
}

RegistryValue registryValue(const std::string& given, const std::string& name, const std::string& text) {
    if (const auto number = afterPrefix(text, "dword:"))
        return simwin::dwordValue(name, dword(given, *number));
    if (const auto digits = afterPrefix(text, "hex:"))
        return simwin::binaryValue(name, hexBytes(given, *digits));
    if (const auto expand = afterPrefix(text, "expand:")) {
        RegistryValue value = simwin::textValue(name, *expand);
        value.type = static_cast<std::uint32_t>(RegistryType::ExpandText);
        return value;
    }
    if (const auto list = afterPrefix(text, "multi:")) {
        std::vector<std::string> items;
        for (std::size_t from = 0; from <= list->size();) {
            const std::size_t end = std::min(simwin::findCharacter(*list, '|', from), list->size());
            items.push_back(list->substr(from, end - from));
            from = end + 1;
        }
        return simwin::multiTextValue(name, items);
    }
    return simwin::textValue(name, afterPrefix(text, "text:").value_or(text));
}

void applyValue(Station& station, const std::string& given) {
    const std::string whole = narrow("--value", given);
    const std::size_t equals = whole.find('=');
    const std::size_t slash = simwin::findLastCharacter(whole.substr(0, equals), '\\');
    if (equals == std::string::npos || slash == std::string::npos)
        fail("--value", given, kValueForm);
    const std::string name = whole.substr(slash + 1, equals - slash - 1);
    const RegistryValue value = registryValue(given, name == "@" ? "" : name, whole.substr(equals + 1));
    if (!station.registry.set(simwin::withClassesInPlace(withWholeHive(whole.substr(0, slash))), value))
        fail("--value", given, kValueForm);
}

void applyFail(Station& station, const std::string& given) {
    std::vector<std::string_view> names;
    for (const CallRow* row : questions())
        names.push_back(row->call);
    const auto found =
        std::ranges::find_if(names, [&](std::string_view name) { return simwin::equalNoCase(name, given); });
    if (found == names.end())
        fail("--fail", given,
             "expected a call that the module asks the station by, such as SendARP" +
                 describeSimilar(similarWords(given, names)));
    station.fails[std::string(*found)] = 0;
}

// Windows 95 to Me have the numbers 4.0, 4.10 and 4.90, and builds below those of Windows NT 4.
bool is9x(std::uint32_t major, std::uint32_t minor, std::uint32_t build) {
    constexpr std::uint32_t kFirstBuildOfNT4 = 1381;
    return major == 4 && (minor != 0 || build < kFirstBuildOfNT4);
}

void applyVersion(Station& station, const std::string& given) {
    std::uint32_t parts[3] = {};
    const char* place = given.data();
    const char* end = given.data() + given.size();
    for (std::uint32_t& part : parts) {
        if (&part != parts && (place == end || *place++ != '.'))
            fail("--version", given, "expected major, minor and build, such as 5.1.2600");
        const auto [next, error] = std::from_chars(place, end, part);
        if (error != std::errc())
            fail("--version", given, "expected major, minor and build, such as 5.1.2600");
        place = next;
    }
    if (place != end)
        fail("--version", given, "expected major, minor and build, such as 5.1.2600");
    simwin::WindowsVersion version = station.version.value_or(simwin::WindowsVersion());
    version.platformId = is9x(parts[0], parts[1], parts[2]) ? 1 : 2;
    version.major = parts[0];
    version.minor = parts[1];
    version.build = parts[2];
    version.servicePack.clear();
    // Since Windows XP they are always there.
    version.terminalServices =
        parts[0] > 5 || (parts[0] == 5 && parts[1] > 0) || (version.platformId == 2 && version.terminalServices);
    station.version = version;
}

// A call fails with the error that it has for it, which it tells when it is made to fail.
void findErrors(Station& station) {
    if (std::ranges::none_of(station.fails, [](const auto& one) { return one.second == 0; }))
        return;
    std::vector<AskedCall> calls;
    {
        const Collector collector;
        simwin::Machine machine(station);
        runOn(collector, machine, calls);
    }
    for (auto& failing : station.fails) {
        std::uint32_t& error = failing.second;
        if (error != 0)
            continue;
        const auto failed = std::ranges::find_if(
            calls, [&](const AskedCall& one) { return one.call.name == failing.first && !one.call.succeeded; });
        error = failed != calls.end() && failed->call.error != 0 ? failed->call.error : kAccessDenied;
    }
}

}  // namespace

void addWhatIfOfDisk(CLI::App& command, WhatIf& whatIf) {
    command.add_option("--set", whatIf.set, "As if the environment variable had this value")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    command.add_option("--version", whatIf.version, "As if it were this version of Windows, such as 5.1.2600")
        ->type_name("M.m.BUILD");
}

void addWhatIf(CLI::App& command, WhatIf& whatIf) {
    addWhatIfOfDisk(command, whatIf);
    command.add_option("--unset", whatIf.unset, "As if the environment variable were not set")
        ->type_name("NAME")
        ->allow_extra_args(false);
    command
        .add_option(
            "--value", whatIf.value,
            "As if the registry value were this text, or behind dword:, hex:, expand: or multi: one of that type")
        ->type_name("KEY\\NAME=TEXT")
        ->allow_extra_args(false);
    command.add_option("--fail", whatIf.fail, "As if this call of Windows always failed")
        ->type_name("CALL")
        ->allow_extra_args(false);
}

void apply(const WhatIf& whatIf, Station& station) {
    Station changed = station;
    for (const std::string& name : whatIf.unset) {
        checkVariableName("--unset", name, name);
        unset(changed, narrow("--unset", name));
    }
    for (const std::string& given : whatIf.set)
        applySet(changed, given);
    for (const std::string& given : whatIf.value)
        applyValue(changed, given);
    if (!whatIf.version.empty())
        applyVersion(changed, whatIf.version);
    for (const std::string& given : whatIf.fail)
        applyFail(changed, given);
    findErrors(changed);
    station = std::move(changed);
}

}  // namespace kvstation
