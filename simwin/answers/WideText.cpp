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

// Its units; those of a text that ends with a zero with it.
std::size_t lengthOf(const WCHAR* text, int length) {
    return length < 0 ? utf16Length(text) + 1 : static_cast<std::size_t>(length);
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
    const std::u16string units(job.text, job.text + lengthOf(job.text, job.length));
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
    // What fits is written in any case.
    const auto room = static_cast<std::size_t>(job.size);
    std::copy_n(narrowed.begin(), std::min(room, narrowed.size()), job.buffer);
    if (room < narrowed.size())
        return failConversion(machine, ERROR_INSUFFICIENT_BUFFER);
    if (job.usedReplacement != nullptr)
        *job.usedReplacement = used ? TRUE : FALSE;
    return static_cast<int>(narrowed.size());
}

std::size_t wideBytes(const WCHAR* text, int length) {
    return text != nullptr ? sizeof(WCHAR) * lengthOf(text, length) : 0;
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
