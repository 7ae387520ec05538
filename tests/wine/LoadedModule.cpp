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

// Calls visit(library, function, slot) for every import, until it returns true.
template <typename Visit>
void VisitImports(HMODULE module, Visit visit) {
    const auto& directory = HeaderOf(module).DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.Size == 0)
        return;
    for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); library->Name != 0; ++library) {
        const std::string name = LowerCase(At<char>(module, library->Name));
        const auto* slot = At<ULONG_PTR>(module, library->FirstThunk);
        const auto* import = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        for (; import->u1.AddressOfData != 0; ++import, ++slot) {
            const ULONGLONG ordinal = import->u1.Ordinal;
            const std::string function =
                IMAGE_SNAP_BY_ORDINAL(ordinal)
                    ? "#" + std::to_string(IMAGE_ORDINAL(ordinal))
                    : reinterpret_cast<const char*>(At<IMAGE_IMPORT_BY_NAME>(module, import->u1.AddressOfData)->Name);
            if (visit(name, function, slot))
                return;
        }
    }
}

void Write(ULONG_PTR* slot, ULONG_PTR value) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
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
    VisitImports(module, [&](const std::string& library, const std::string& function, const ULONG_PTR*) {
        imports[library].insert(function);
        return false;
    });
    return imports;
}

unsigned CharacteristicsOf(HMODULE module) {
    return HeaderOf(module).DllCharacteristics;
}

ImportOverride::ImportOverride(HMODULE module, const char* library, const char* name, ULONG_PTR replacement) {
    VisitImports(module, [&](const std::string& from, const std::string& function, const ULONG_PTR* slot) {
        if (from == library && function == name)
            m_slot = const_cast<ULONG_PTR*>(slot);
        return m_slot != nullptr;
    });
    if (m_slot == nullptr) {
        ADD_FAILURE() << "nothing imports " << name << " of " << library;
        return;
    }
    m_original = *m_slot;
    Write(m_slot, replacement);
}

ImportOverride::~ImportOverride() {
    if (m_slot != nullptr)
        Write(m_slot, m_original);
}
