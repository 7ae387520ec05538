#include <algorithm>
#include <string>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace {

int failConversion(Machine& machine, DWORD error) {
    machine.setLastError(error);
    return 0;
}

// The length of a wide text that ends with a NUL, which counts.
std::size_t wideLength(const WCHAR* text) {
    std::size_t length = 0;
    while (text[length] != 0)
        ++length;
    return length + 1;
}

bool isAnsi(UINT codePage) {
    return codePage == CP_ACP || codePage == CP_THREAD_ACP || codePage == codePageInForce();
}

struct Narrowing {
    const WCHAR* text;
    int length;
    char* buffer;
    int size;
    const char* replacement;
    BOOL* usedReplacement;
};

std::string narrowedText(const Narrowing& job, bool& used) {
    const std::size_t length = job.length < 0 ? wideLength(job.text) : static_cast<std::size_t>(job.length);
    std::u16string units(length, u'\0');
    std::transform(job.text, job.text + length, units.begin(), [](WCHAR unit) { return static_cast<char16_t>(unit); });
    if (codePageInForce() == kUtf8CodePage)
        return fromUtf16(units);
    std::string bytes;
    for (const char16_t unit : units) {
        const std::string like = likeUtf16(unit);
        bytes += !like.empty() ? like : std::string(1, job.replacement != nullptr ? *job.replacement : '?');
        used = used || like.empty();
    }
    return bytes;
}

int narrow(Machine& machine, UINT codePage, const Narrowing& job) {
    if (!isAnsi(codePage) || job.text == nullptr || job.length == 0 || job.size < 0 ||
        (job.size != 0 && job.buffer == nullptr))
        return failConversion(machine, ERROR_INVALID_PARAMETER);
    // Every character has a form in UTF-8.
    if (codePageInForce() == kUtf8CodePage && (job.replacement != nullptr || job.usedReplacement != nullptr))
        return failConversion(machine, ERROR_INVALID_PARAMETER);
    bool used = false;
    const std::string narrowed = narrowedText(job, used);
    if (job.size == 0)
        return static_cast<int>(narrowed.size());
    if (static_cast<std::size_t>(job.size) < narrowed.size())
        return failConversion(machine, ERROR_INSUFFICIENT_BUFFER);
    std::copy(narrowed.begin(), narrowed.end(), job.buffer);
    if (job.usedReplacement != nullptr)
        *job.usedReplacement = used ? TRUE : FALSE;
    return static_cast<int>(narrowed.size());
}

std::size_t wideBytes(const WCHAR* text, int length) {
    if (text == nullptr)
        return 0;
    return sizeof(WCHAR) * (length < 0 ? wideLength(text) : static_cast<std::size_t>(length));
}

}  // namespace

int WINAPI sim_WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, LPSTR buffer, int size,
                                   LPCSTR replacement, LPBOOL usedReplacement) {
    return makeCall<sim_WideCharToMultiByte>(
        "WideCharToMultiByte", failsWithZero(ERROR_NO_UNICODE_TRANSLATION),
        [&](Machine& machine) {
            return narrow(machine, codePage, {text, length, buffer, size, replacement, usedReplacement});
        },
        Value{codePage}, Value{flags}, Bytes{text, Machine::current().isWatched() ? wideBytes(text, length) : 0},
        Value{length}, TextBuffer{buffer, static_cast<std::size_t>(std::max(size, 0))}, Value{size},
        Bytes{replacement, 1}, Number{usedReplacement});
}
