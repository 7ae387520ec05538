#include "kvstation/Questions.h"

#include <algorithm>

#include "simwin/CodePage.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;
using simwin::textOf;

std::string capitals(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), simwin::toUpper);
    return result;
}

bool isIn(const std::vector<std::string>& names, std::string_view name) {
    return std::ranges::any_of(names, [&](const std::string& one) { return simwin::equalNoCase(one, name); });
}

void addOnce(std::vector<std::string>& names, std::string_view name) {
    if (!name.empty() && !isIn(names, name))
        names.emplace_back(name);
}

}  // namespace

bool KeyPaths::add(const std::string& path) {
    const bool isNew = m_known.insert(capitals(path)).second;
    if (isNew)
        m_paths.push_back(path);
    return isNew;
}

bool KeyPaths::add(const KeyPaths& paths) {
    bool isNew = false;
    for (const std::string& path : paths.m_paths)
        isNew = add(path) || isNew;
    return isNew;
}

std::vector<std::string> KeyPaths::byDepth() const {
    std::vector<std::string> paths = m_paths;
    std::ranges::stable_sort(paths, {}, [](const std::string& path) { return std::ranges::count(path, '\\'); });
    return paths;
}

void Questions::ends(const ObservedCall& call) {
    m_calls.insert(call.name);
    m_registry.take(call);
    if (call.name == "RegOpenKeyA" || call.name == "RegOpenKeyExA") {
        const std::string path = openedKey(call);
        m_keys.add(path);
        if (!call.succeeded)
            m_missingKeys.add(path);
    } else if (call.name == "KVGetEnv" || call.name == "GetEnvironmentVariableA") {
        addOnce(call.succeeded ? m_variables : m_missingVariables, textOf(call.parameters[0]));
    } else if (call.name == "FindFirstFileA" || call.name == "_access" || call.name == "GetFileVersionInfoSizeA") {
        addOnce(m_files, textOf(call.parameters[0]));
    }
}

bool Questions::hasAskedVariable(std::string_view name) const {
    return isIn(m_variables, name);
}

}  // namespace kvstation
