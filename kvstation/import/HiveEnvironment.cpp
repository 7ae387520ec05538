#include "kvstation/import/HiveEnvironment.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "kvstation/import/HiveValues.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using simwin::RegistryType;
using simwin::RegistryValue;
using simwin::Variable;

using Variables = std::vector<Variable>;

Variables::iterator findVariable(Variables& variables, std::string_view name) {
    return std::ranges::find_if(variables, [&](const Variable& one) { return simwin::equalNoCase(one.name, name); });
}

void setVariable(Variables& variables, const std::string& name, const std::string& value) {
    if (const auto known = findVariable(variables, name); known != variables.end())
        known->value = value;
    else
        variables.push_back({name, value});
}

// None when a variable between two percent signs is not known. A single percent sign stands for itself.
std::optional<std::string> expand(Variables& variables, std::string_view text) {
    std::string result;
    for (std::size_t begin = text.find('%'); begin != std::string_view::npos; begin = text.find('%')) {
        const std::size_t end = text.find('%', begin + 1);
        if (end == std::string_view::npos)
            break;
        const auto known = findVariable(variables, text.substr(begin + 1, end - begin - 1));
        if (known == variables.end())
            return std::nullopt;
        result.append(text.substr(0, begin)).append(known->value);
        text.remove_prefix(end + 1);
    }
    return result.append(text);
}

// Of these a logon or a session sets its own, whatever the machine has.
constexpr const char* kOfLogon[] = {"USERNAME", "USERDOMAIN", "USERPROFILE", "APPDATA",    "LOCALAPPDATA", "HOMEDRIVE",
                                    "HOMEPATH", "HOMESHARE",  "LOGONSERVER", "CLIENTNAME", "SESSIONNAME"};

bool isName(std::string_view name) {
    return !name.empty() && name.find('=') == std::string_view::npos &&
           std::ranges::none_of(kOfLogon, [&](const char* one) { return simwin::equalNoCase(name, one); });
}

void setPlain(Variables& variables, const RegistryValue& value) {
    if (static_cast<RegistryType>(value.type) == RegistryType::Text && isName(value.name))
        setVariable(variables, value.name, valueText(value));
}

void setExpanded(Variables& variables, const RegistryValue& value) {
    if (static_cast<RegistryType>(value.type) != RegistryType::ExpandText || !isName(value.name))
        return;
    if (const std::optional<std::string> text = expand(variables, valueText(value)))
        setVariable(variables, value.name, *text);
    else
        std::erase_if(variables, [&](const Variable& one) { return simwin::equalNoCase(one.name, value.name); });
}

void setAll(Variables& variables, const HiveValues& values) {
    for (const RegistryValue& value : values.all())
        setPlain(variables, value);
    for (const RegistryValue& value : values.all())
        setExpanded(variables, value);
}

// Windows Me keeps there what its start had set; Windows 95 and 98 keep nothing.
Variables environmentOf9x(HiveRegistry& registry) {
    Variables variables;
    const HiveValues version(registry, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion");
    if (const std::optional<std::string> root = version.text("SystemRoot"); root && !root->empty())
        variables.push_back({"windir", *root});
    setAll(variables,
           HiveValues(registry, "HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Control\\SessionManager\\Environment"));
    return variables;
}

}  // namespace

Variables environmentOf(HiveRegistry& registry) {
    if (registry.isWindows9x())
        return environmentOf9x(registry);
    Variables variables;
    const HiveValues version(registry, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion");
    if (const std::optional<std::string> root = version.text("SystemRoot"); root && root->size() > 2) {
        variables.push_back({"SystemRoot", *root});
        variables.push_back({"SystemDrive", root->substr(0, 2)});
    }
    setAll(
        variables,
        HiveValues(registry, "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"));
    setAll(variables, HiveValues(registry, "HKEY_CURRENT_USER\\Environment"));
    return variables;
}

}  // namespace kvstation
