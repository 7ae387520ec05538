#include "tests/wine/LoadedModule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

namespace {

// The image's headers and tables lie at offsets from where it is loaded.
template <typename Type>
const Type* At(HMODULE module, std::size_t offset) {
    return reinterpret_cast<const Type*>(reinterpret_cast<const char*>(module) + offset);
}

const IMAGE_OPTIONAL_HEADER& HeaderOf(HMODULE module) {
    const auto start = static_cast<std::size_t>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
    return At<IMAGE_NT_HEADERS>(module, start)->OptionalHeader;
}

std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char letter) { return static_cast<char>(std::tolower(static_cast<unsigned char>(letter))); });
    return text;
}

}  // namespace

std::vector<Export> ExportsOf(HMODULE module) {
    std::vector<Export> exports;
    const auto& entry = HeaderOf(module).DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    if (entry.Size == 0)
        return exports;
    const auto* directory = At<IMAGE_EXPORT_DIRECTORY>(module, entry.VirtualAddress);
    const auto* functions = At<DWORD>(module, directory->AddressOfFunctions);
    const auto* names = At<DWORD>(module, directory->AddressOfNames);
    const auto* indexes = At<WORD>(module, directory->AddressOfNameOrdinals);
    for (DWORD index = 0; index < directory->NumberOfFunctions; ++index) {
        if (functions[index] == 0)
            continue;
        const auto* named = std::find(indexes, indexes + directory->NumberOfNames, index);
        const bool hasName = named != indexes + directory->NumberOfNames;
        exports.push_back({directory->Base + index, hasName ? At<char>(module, names[named - indexes]) : ""});
    }
    return exports;
}

std::map<std::string, std::set<std::string>> ImportsOf(HMODULE module) {
    std::map<std::string, std::set<std::string>> imports;
    for (const redirect::Import& import : redirect::importsOf(module))
        imports[LowerCase(std::string(import.library))].insert(import.function());
    return imports;
}

unsigned CharacteristicsOf(HMODULE module) {
    return HeaderOf(module).DllCharacteristics;
}

ImportOverride::ImportOverride(HMODULE module, const redirect::Replacement& replacement)
    : m_redirection(module, std::span(&replacement, 1)) {
    if (m_redirection.replaced() == 0)
        ADD_FAILURE() << "nothing imports " << replacement.name << " of " << replacement.library;
}
