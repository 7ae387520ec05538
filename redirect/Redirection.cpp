#include "redirect/Redirection.h"

#include <algorithm>
#include <system_error>

namespace redirect {
namespace {

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isSameFile(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char one, char other) { return lowerCase(one) == lowerCase(other); });
}

bool standsFor(const Replacement& replacement, const Import& import) {
    return replacement.ordinal == import.ordinal && isSameFile(replacement.library, import.library) &&
           (import.ordinal != 0 || replacement.name == import.name);
}

// False, with the last error, when the slot's page cannot be made writable.
bool write(ULONG_PTR* slot, ULONG_PTR address) noexcept {
    DWORD protection = 0;
    if (VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection) == FALSE)
        return false;
    *slot = address;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
    return true;
}

}  // namespace

// Once the private constructor is through, the destructor restores what was replaced before an exception.
Redirection::Redirection(HMODULE library, std::span<const Replacement> replacements) : Redirection() {
    for (const Import& import : importsOf(library)) {
        const auto found = std::find_if(replacements.begin(), replacements.end(),
                                        [&](const Replacement& one) { return standsFor(one, import); });
        if (found == replacements.end()) {
            m_untouched.push_back(import);
            continue;
        }
        m_originals.push_back({import.slot, *import.slot});
        if (!write(import.slot, reinterpret_cast<ULONG_PTR>(found->address)))
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                                    "cannot redirect " + import.text());
    }
}

Redirection::~Redirection() {
    for (const Original& original : m_originals)
        write(original.slot, original.address);
}

}  // namespace redirect
