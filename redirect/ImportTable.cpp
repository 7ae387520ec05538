#include "redirect/ImportTable.h"

namespace redirect {
namespace {

// The image's headers and tables lie at offsets from where it is loaded.
template <class Type>
Type* at(HMODULE library, std::size_t offset) {
    return reinterpret_cast<Type*>(reinterpret_cast<char*>(library) + offset);
}

const IMAGE_DATA_DIRECTORY& importDirectory(HMODULE library) {
    const auto start = static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(library, 0)->e_lfanew);
    return at<IMAGE_NT_HEADERS>(library, start)->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
}

Import importOf(HMODULE library, const IMAGE_IMPORT_DESCRIPTOR& from, const IMAGE_THUNK_DATA& thunk, ULONG_PTR* slot) {
    const char* file = at<char>(library, from.Name);
    const ULONGLONG number = thunk.u1.Ordinal;
    if (IMAGE_SNAP_BY_ORDINAL(number))
        return {file, {}, static_cast<std::uint16_t>(IMAGE_ORDINAL(number)), slot};
    const auto* named = at<IMAGE_IMPORT_BY_NAME>(library, thunk.u1.AddressOfData);
    return {file, reinterpret_cast<const char*>(named->Name), 0, slot};
}

}  // namespace

std::string Import::function() const {
    return ordinal != 0 ? "#" + std::to_string(ordinal) : std::string(name);
}

std::string Import::text() const {
    return std::string(library) + "!" + function();
}

std::vector<Import> importsOf(HMODULE library) {
    std::vector<Import> imports;
    const IMAGE_DATA_DIRECTORY& directory = importDirectory(library);
    if (directory.Size == 0)
        return imports;
    for (auto* from = at<IMAGE_IMPORT_DESCRIPTOR>(library, directory.VirtualAddress); from->Name != 0; ++from) {
        // Old linkers wrote no second table: nothing tells any more what the slots stand for.
        if (from->OriginalFirstThunk == 0)
            continue;
        // The slots were filled when the library was loaded; what they stand for is told by a second, parallel table.
        auto* slot = at<ULONG_PTR>(library, from->FirstThunk);
        for (auto* thunk = at<IMAGE_THUNK_DATA>(library, from->OriginalFirstThunk); thunk->u1.AddressOfData != 0;
             ++thunk, ++slot)
            imports.push_back(importOf(library, *from, *thunk, slot));
    }
    return imports;
}

}  // namespace redirect
