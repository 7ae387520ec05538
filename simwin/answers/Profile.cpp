#include <algorithm>
#include <string_view>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/text/CodePage.h"

using namespace simwin;

namespace {

constexpr std::string_view kProfile = "kvcstat64.ini";

std::string_view trimmed(std::string_view text) {
    text = text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

// Windows takes the blanks off a value, and then one pair of like quotes.
std::string_view valueOf(std::string_view written) {
    const std::string_view value = trimmed(written);
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

std::string_view trimmedDefault(const char* text) {
    const std::string_view whole = text != nullptr ? text : "";
    return whole.substr(0, whole.find_last_not_of(' ') + 1);
}

std::string_view findEntry(const Machine& machine, const char* section, const char* entry, const char* otherwise,
                           const char* file) {
    const std::string_view fileName = file != nullptr ? file : "";
    if (section != nullptr && entry != nullptr &&
        equalNoCase(fileName.substr(findLastCharacter(fileName, '\\') + 1), kProfile))
        for (const ProfileEntry& one : machine.station().profile)
            if (equalNoCase(one.section, section) && equalNoCase(one.entry, entry))
                return valueOf(one.value);
    return trimmedDefault(otherwise);
}

// The declarations that there are differ in it.
using ProfileResult = decltype(::GetPrivateProfileStringA(nullptr, nullptr, nullptr, nullptr, 0, nullptr));

ProfileResult copyEntry(std::string_view text, char* buffer, DWORD size) {
    if (buffer == nullptr || size == 0)
        return 0;
    const std::size_t length = std::min<std::size_t>(text.size(), size - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
    return static_cast<ProfileResult>(length);
}

}  // namespace

ProfileResult WINAPI sim_GetPrivateProfileStringA(LPCSTR section, LPCSTR entry, LPCSTR otherwise, LPSTR buffer,
                                                  DWORD size, LPCSTR file) {
    return makeCall<sim_GetPrivateProfileStringA>(
        "GetPrivateProfileStringA", kNeverFails,
        [&](Machine& machine) { return copyEntry(findEntry(machine, section, entry, otherwise, file), buffer, size); },
        Text{section}, Text{entry}, Text{otherwise}, TextBuffer{buffer, size}, Value{size}, Text{file});
}
