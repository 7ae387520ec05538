#include <algorithm>
#include <array>
#include <cwchar>
#include <vector>

#include "framework/Windows.h"
#include "kvcstat/common/Handles.h"
#include "kvstation/capture/RunningState.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Utf16.h"
#include "simwin/machine/Registry.h"
#include "simwin/machine/VersionResource.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestName = 16384;  // of a value, its NUL included
constexpr std::size_t kLargestValue = std::size_t{1} << 20;

UniqueRegKey openKey(const std::string& fullPath) {
    HKEY key = nullptr;
    if (const std::optional<simwin::HivePath> path = simwin::splitHive(fullPath))
        RegOpenKeyExA(simwin::handleOf(path->hive), std::string(path->rest).c_str(), 0, KEY_READ, &key);
    return UniqueRegKey(key);
}

void copySubKeys(HKEY key, const std::string& path, simwin::RegistryTree& tree) {
    std::array<char, 256> name{};
    for (DWORD i = 0; RegEnumKeyA(key, i, name.data(), static_cast<DWORD>(name.size())) == ERROR_SUCCESS; ++i)
        tree.create(path + "\\" + name.data());
}

void copyValues(HKEY key, simwin::KeyId id, simwin::RegistryTree& tree) {
    std::vector<char> name(kLongestName);
    for (DWORD i = 0;; ++i) {
        DWORD length = static_cast<DWORD>(name.size());
        DWORD type = 0;
        DWORD size = 0;
        if (RegEnumValueA(key, i, name.data(), &length, nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
            return;
        std::string data(std::min<std::size_t>(size, kLargestValue), '\0');
        if (RegQueryValueExA(key, name.data(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size) !=
            ERROR_SUCCESS)
            continue;
        data.resize(std::min<std::size_t>(data.size(), size));
        tree.set(id, {std::string(name.data(), length), type, std::move(data)});
    }
}

std::optional<std::string> variableNow(const std::string& name) {
    const DWORD size = GetEnvironmentVariableA(name.c_str(), nullptr, 0);
    std::string value(size, '\0');
    if (size == 0 || GetEnvironmentVariableA(name.c_str(), value.data(), size) >= size)
        return std::nullopt;
    value.resize(size - 1);
    return value;
}

// A name may begin with "=".
std::vector<simwin::Variable> variablesNow() {
    const UniqueHandle<wchar_t*, &FreeEnvironmentStringsW> block(GetEnvironmentStringsW());
    std::vector<simwin::Variable> variables;
    for (const wchar_t* line = block.get(); line != nullptr && *line != L'\0'; line += std::wcslen(line) + 1) {
        const std::wstring_view wideName(line, std::wcscspn(line + 1, L"=") + 1);
        const std::string name = simwin::fromUtf8Leniently(toUtf8(wideName));
        if (const std::optional<std::string> value = variableNow(name))
            variables.push_back({name, *value});
    }
    return variables;
}

class RunningState : public LocalState {
  public:
    bool copyKey(const std::string& fullPath, simwin::RegistryTree& tree) override {
        const UniqueRegKey key = openKey(fullPath);
        const std::optional<simwin::KeyId> id = key.get() != nullptr ? tree.create(fullPath) : std::nullopt;
        if (!id)
            return false;
        copySubKeys(key.get(), fullPath, tree);
        copyValues(key.get(), *id, tree);
        return true;
    }

    std::optional<std::string> variable(const std::string& name) override {
        const auto isSame = [&](const simwin::Variable& one) { return simwin::equalNoCase(one.name, name); };
        const auto found = std::ranges::find_if(m_variables, isSame);
        return found != m_variables.end() ? std::optional(found->value) : std::nullopt;
    }

    std::optional<simwin::File> file(const std::string& path) override {
        if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES)
            return std::nullopt;
        return simwin::File{path, versionOf(path), {}};
    }

    bool knows(const Place&) override { return true; }

  private:
    static std::optional<simwin::FileVersion> versionOf(const std::string& path) {
        DWORD ignored = 0;
        const DWORD size = GetFileVersionInfoSizeA(path.c_str(), &ignored);
        std::vector<char> block(size);
        void* found = nullptr;
        UINT length = 0;
        if (size == 0 || GetFileVersionInfoA(path.c_str(), 0, size, block.data()) == FALSE ||
            VerQueryValueA(block.data(), "\\", &found, &length) == FALSE)
            return std::nullopt;
        return simwin::versionIn({static_cast<const char*>(found), length});
    }

    const std::vector<simwin::Variable> m_variables = variablesNow();
};

}  // namespace

std::unique_ptr<LocalState> runningState() {
    if (GetACP() != simwin::codePageInForce())
        throw Failure("this Windows has the ANSI code page " + std::to_string(GetACP()) +
                      ", which is none of the known ones: " + simwin::listOfCodePages());
    return std::make_unique<RunningState>();
}

}  // namespace kvstation
