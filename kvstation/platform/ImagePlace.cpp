#include "kvstation/platform/ImagePlace.h"

#include <algorithm>
#include <array>

#include "framework/Windows.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;  // the tool's own image

namespace kvstation {
namespace {

constexpr std::string_view kToolName = "kvstation.exe";  // a program has no name in itself
constexpr std::size_t kDeepest = 62;                     // callers; more are refused before Windows Vista

// By what a process is ended.
constexpr std::array<std::string_view, 6> kEnders = {kToolName,        "ntdll.dll",  "kernel32.dll",
                                                     "kernelbase.dll", "msvcrt.dll", "ucrtbase.dll"};

template <class Type>
const Type& at(const char* image, std::size_t offset) {
    return *reinterpret_cast<const Type*>(image + offset);
}

// Null when the address is in no image.
const char* imageOf(const void* address) {
    MEMORY_BASIC_INFORMATION memory{};
    if (VirtualQuery(address, &memory, sizeof memory) == 0 || memory.State != MEM_COMMIT || memory.Type != MEM_IMAGE)
        return nullptr;
    return static_cast<const char*>(memory.AllocationBase);
}

std::string_view nameOf(const char* image) {
    if (image == reinterpret_cast<const char*>(&__ImageBase))
        return kToolName;
    const auto headers = static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(image, 0).e_lfanew);
    const IMAGE_DATA_DIRECTORY& exports =
        at<IMAGE_NT_HEADERS>(image, headers).OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    return exports.Size != 0 ? image + at<IMAGE_EXPORT_DIRECTORY>(image, exports.VirtualAddress).Name : "";
}

bool isSameName(std::string_view left, std::string_view right) {
    const auto lower = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter; };
    return std::ranges::equal(left, right, {}, lower, lower);
}

bool isEnder(std::string_view image) {
    return std::ranges::any_of(kEnders, [&](std::string_view one) { return isSameName(image, one); });
}

}  // namespace

ImagePlace placeOf(const void* address) {
    const auto number = reinterpret_cast<std::uintptr_t>(address);
    const char* image = imageOf(address);
    const std::string_view name = image != nullptr ? nameOf(image) : std::string_view();
    return name.empty() ? ImagePlace{{}, number} : ImagePlace{name, number - reinterpret_cast<std::uintptr_t>(image)};
}

const void* callerOfEnding() {
    std::array<void*, kDeepest> callers{};
    const USHORT count = CaptureStackBackTrace(0, kDeepest, callers.data(), nullptr);
    for (std::size_t i = 0; i < count; ++i) {
        const void* caller = callers[i];
        const ImagePlace place = placeOf(caller);
        if (!place.image.empty() && !isEnder(place.image))
            return caller;
    }
    return nullptr;
}

}  // namespace kvstation
