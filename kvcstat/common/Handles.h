// One owner type for each release function of Windows: what it holds is released on every way out.
#pragma once

#include <memory>
#include <type_traits>

#include "framework/Windows.h"

template <auto Release>
struct HandleReleaser {
    template <class Pointer>
    void operator()(Pointer handle) const noexcept {
        Release(handle);
    }
};

template <class Handle, auto Release>
using UniqueHandle = std::unique_ptr<std::remove_pointer_t<Handle>, HandleReleaser<Release>>;

using UniqueRegKey = UniqueHandle<HKEY, &RegCloseKey>;
using UniqueLibrary = UniqueHandle<HMODULE, &FreeLibrary>;
using UniqueLocalBlock = UniqueHandle<HLOCAL, &LocalFree>;
using UniqueGlobalBlock = UniqueHandle<HGLOBAL, &GlobalFree>;

// Address of a library's function in the type that it has, or null.
template <class Function>
Function FindFunction(HMODULE library, const char* name) noexcept {
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
}
