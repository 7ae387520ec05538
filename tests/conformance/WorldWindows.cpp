// A real Windows, or Wine, as the suite's world.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "tests/conformance/Arrangement.h"
#include "tests/conformance/NativeKeys.h"
#include "tests/conformance/World.h"

namespace conformance {
namespace {

constexpr char kPrefix[] = "kvconform-";
constexpr char kTraceFile[] = "trace.log";

std::string temporaryFolder() {
    char path[MAX_PATH] = {};
    GetTempPathA(sizeof path, path);
    char whole[MAX_PATH] = {};
    // The temporary folder may be told by its short names.
    GetLongPathNameA(path, whole, sizeof whole);
    const std::string found = whole[0] != '\0' ? whole : path;
    return found.ends_with('\\') ? found : found + '\\';
}

bool isRunning(const char* number) {
    HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(std::strtoul(number, nullptr, 10)));
    if (process == nullptr)
        return GetLastError() == ERROR_ACCESS_DENIED;
    const bool ended = WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
    CloseHandle(process);
    return !ended;
}

// The name is one of ours whose process has ended.
bool isLeftOver(const char* name) {
    const std::size_t length = std::strlen(kPrefix);
    if (std::strncmp(name, kPrefix, length) != 0)
        return false;
    const char* number = name + length;
    const bool isNumber = *number != '\0' && number[std::strspn(number, "0123456789")] == '\0';
    return isNumber && !isRunning(number);
}

void deleteFolder(const std::string& folder) {
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA((folder + "\\*").c_str(), &data);
    for (bool more = find != INVALID_HANDLE_VALUE; more; more = FindNextFileA(find, &data) != FALSE) {
        const std::string name = data.cFileName;
        if (name == "." || name == "..")
            continue;
        if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
            deleteFolder(folder + '\\' + name);
        else
            DeleteFileA((folder + '\\' + name).c_str());
    }
    if (find != INVALID_HANDLE_VALUE)
        FindClose(find);
    RemoveDirectoryA(folder.c_str());
}

void deleteKey(const std::string& name) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, ("Software\\" + name).c_str(), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS)
        return;
    deleteTree(key);
    RegCloseKey(key);
}

std::vector<std::string> leftOverKeys() {
    std::vector<std::string> names;
    HKEY software = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software", 0, KEY_READ, &software) != ERROR_SUCCESS)
        return names;
    char name[256] = {};
    for (DWORD index = 0; RegEnumKeyA(software, index, name, sizeof name) == ERROR_SUCCESS; ++index)
        if (isLeftOver(name))
            names.emplace_back(name);
    RegCloseKey(software);
    return names;
}

std::vector<std::string> leftOverFolders() {
    std::vector<std::string> names;
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA((temporaryFolder() + kPrefix + "*").c_str(), &data);
    for (bool more = find != INVALID_HANDLE_VALUE; more; more = FindNextFileA(find, &data) != FALSE)
        if (isLeftOver(data.cFileName))
            names.emplace_back(data.cFileName);
    if (find != INVALID_HANDLE_VALUE)
        FindClose(find);
    return names;
}

void removeLeftOvers() {
    for (const std::string& name : leftOverKeys())
        deleteKey(name);
    for (const std::string& name : leftOverFolders())
        deleteFolder(temporaryFolder() + name);
}

void makeKey(HKEY root, const DescribedKey& described) {
    std::vector<HKEY> opened = {root};
    for (std::size_t begin = 0; begin <= described.path.size();) {
        const std::size_t end = std::min(described.path.find('\\', begin), described.path.size());
        opened.push_back(createKey(opened.back(), described.path.substr(begin, end - begin)));
        begin = end + 1;
    }
    for (const DescribedValue& value : described.values)
        setValue(opened.back(), value);
    for (std::size_t i = 1; i < opened.size(); ++i)
        RegCloseKey(opened[i]);
}

void makeRegistry(const std::string& name) {
    HKEY root = nullptr;
    const LSTATUS error = RegCreateKeyExA(HKEY_CURRENT_USER, ("Software\\" + name).c_str(), 0, nullptr,
                                          REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &root, nullptr);
    if (error != ERROR_SUCCESS)
        throw std::runtime_error("HKEY_CURRENT_USER\\Software\\" + name + " cannot be made: error " +
                                 std::to_string(error));
    for (const DescribedKey& key : describedKeys())
        makeKey(root, key);
    RegCloseKey(root);
}

void writeFile(const std::string& path, const std::string& content) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(content.data(), 1, content.size(), file) != content.size())
        throw std::runtime_error(path + " cannot be written");
    std::fclose(file);
}

// This very program is the one with a version.
void copyProgram(const std::string& path) {
    char own[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, own, sizeof own);
    if (CopyFileA(own, path.c_str(), TRUE) == FALSE)
        throw std::runtime_error(path + " cannot be written: error " + std::to_string(GetLastError()));
}

void makeFolders(const std::string& root, const std::string& path) {
    CreateDirectoryA(root.c_str(), nullptr);
    for (std::size_t end = path.find('\\'); end != std::string::npos; end = path.find('\\', end + 1))
        CreateDirectoryA((root + '\\' + path.substr(0, end)).c_str(), nullptr);
}

void makeFiles(const std::string& root) {
    for (const DescribedFile& file : describedFiles()) {
        makeFolders(root, file.path);
        if (file.hasVersion)
            copyProgram(root + '\\' + file.path);
        else
            writeFile(root + '\\' + file.path, file.content);
    }
    std::string profile = std::string("[") + kSection + "]\r\n";
    for (const DescribedEntry& entry : describedEntries())
        profile += entry.name + "=" + entry.written + "\r\n";
    writeFile(root + '\\' + kProfile, profile);
}

void setVariables(bool there) {
    for (const DescribedVariable& variable : describedVariables())
        SetEnvironmentVariableA(variable.name.c_str(), there ? variable.value.c_str() : nullptr);
}

using VersionFunction = const char*(CDECL*)();

VersionFunction wineVersion() {
    return reinterpret_cast<VersionFunction>(
        reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version")));
}

// The true version, which GetVersionEx hides from programs that do not name it.
std::string windowsVersion() {
    using Function = LONG(WINAPI*)(OSVERSIONINFOW*);
    const auto ask = reinterpret_cast<Function>(
        reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOW info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (ask == nullptr || ask(&info) != 0)
        return "Windows";
    return "Windows " + std::to_string(info.dwMajorVersion) + "." + std::to_string(info.dwMinorVersion) + "." +
           std::to_string(info.dwBuildNumber);
}

}  // namespace

struct World::State {
    std::string name = kPrefix + std::to_string(GetCurrentProcessId());
    std::string folder = temporaryFolder() + name;

    State() {
        s_current = this;
        SetUnhandledExceptionFilter(endByCrash);
        SetConsoleCtrlHandler(endByPerson, TRUE);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    // Also when the arrangement was made in part.
    ~State() {
        SetConsoleCtrlHandler(endByPerson, FALSE);
        s_current = nullptr;
        setVariables(false);
        SetEnvironmentVariableA("KVTraceFile", nullptr);
        remove();
    }

  private:
    void remove() const {
        deleteKey(name);
        deleteFolder(folder);
    }

    // A crash and a person's Ctrl+C leave nothing behind either.
    static LONG CALLBACK endByCrash(EXCEPTION_POINTERS* crash) {
        std::printf("CRASH behind the last assertion told: exception 0x%08lX\n", crash->ExceptionRecord->ExceptionCode);
        end();
        return EXCEPTION_EXECUTE_HANDLER;
    }
    static BOOL WINAPI endByPerson(DWORD) {
        end();
        return TRUE;
    }
    static void end() {
        std::fflush(stdout);
        if (s_current != nullptr)
            s_current->remove();
        TerminateProcess(GetCurrentProcess(), kEndedMidway);
    }

    static constexpr UINT kEndedMidway = 4;
    static State* s_current;
};

World::State* World::State::s_current = nullptr;

World::World(UINT ansiCodePage) : m_state(std::make_unique<State>()) {
    if (ansiCodePage != 0 && ansiCodePage != GetACP())
        throw std::runtime_error("this Windows has the ANSI code page " + std::to_string(GetACP()));
    removeLeftOvers();
    makeRegistry(m_state->name);
    makeFiles(m_state->folder);
    setVariables(true);
    SetEnvironmentVariableA("KVTraceFile", folder(kTraceFile).c_str());
    SetEnvironmentVariableA("KVTraceLevel", nullptr);
}

World::~World() = default;

Platform World::platform() const {
    return wineVersion() != nullptr ? Platform::Wine : Platform::Windows;
}

std::string World::platformText() const {
    const VersionFunction wine = wineVersion();
    return wine != nullptr ? std::string("Wine ") + wine() + " (" + windowsVersion() + ")" : windowsVersion();
}

std::string World::key(std::string_view below) const {
    const std::string own = "Software\\" + m_state->name;
    return below.empty() ? own : own + '\\' + std::string(below);
}

std::string World::folder(std::string_view below) const {
    return below.empty() ? m_state->folder : m_state->folder + '\\' + std::string(below);
}

std::string World::driveRoot() const {
    return m_state->folder.substr(0, 3);
}

std::string World::missingRoot() const {
    const DWORD drives = GetLogicalDrives();
    char letter = 'Y';
    while (letter > 'D' && (drives >> (letter - 'A') & 1) != 0)
        --letter;
    return std::string(1, letter) + ":\\";
}

void World::setLastError(DWORD error) {
    SetLastError(error);
}

UINT World::ansiCodePage() const {
    return GetACP();
}

std::vector<std::string> World::traced() const {
    std::vector<std::string> lines;
    FILE* file = std::fopen(folder(kTraceFile).c_str(), "rb");
    if (file == nullptr)
        return lines;
    static char line[8192];
    // "2024-03-09 07:05:03.042 [1234] 2 Component: text"
    while (std::fgets(line, sizeof line, file) != nullptr) {
        const std::string whole(line, std::strcspn(line, "\r\n"));
        const std::size_t behind = whole.find("] ");
        lines.push_back(behind != std::string::npos ? whole.substr(behind + 2) : whole);
    }
    std::fclose(file);
    return lines;
}

}  // namespace conformance
