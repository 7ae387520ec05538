#include "tests/conformance/NativeKeys.h"

#include <stdexcept>
#include <vector>

#include <winternl.h>

extern "C" {
NTSYSAPI NTSTATUS NTAPI NtCreateKey(PHANDLE key, ACCESS_MASK access, const OBJECT_ATTRIBUTES* attributes, ULONG index,
                                    const UNICODE_STRING* keyClass, ULONG options, PULONG disposition);
NTSYSAPI NTSTATUS NTAPI NtOpenKey(PHANDLE key, ACCESS_MASK access, const OBJECT_ATTRIBUTES* attributes);
NTSYSAPI NTSTATUS NTAPI NtSetValueKey(HANDLE key, const UNICODE_STRING* name, ULONG index, ULONG type, const void* data,
                                      ULONG size);
NTSYSAPI NTSTATUS NTAPI NtEnumerateKey(HANDLE key, ULONG index, int kind, void* buffer, ULONG size, PULONG needed);
NTSYSAPI NTSTATUS NTAPI NtDeleteKey(HANDLE key);
}

namespace conformance {
namespace {

constexpr UINT kCodePage = 1252;

// KEY_BASIC_INFORMATION with room for the longest name.
struct BasicKey {
    LARGE_INTEGER lastWrite;
    ULONG titleIndex;
    ULONG nameLength;  // bytes
    WCHAR name[256];
};
constexpr int kBasicInformation = 0;

class WideName {
  public:
    explicit WideName(std::string_view bytes) : m_text(bytes.size() + 1) {
        const int length = MultiByteToWideChar(kCodePage, 0, bytes.data(), static_cast<int>(bytes.size()),
                                               m_text.data(), static_cast<int>(m_text.size()));
        set(static_cast<std::size_t>(bytes.empty() ? 0 : length));
    }
    WideName(const WCHAR* text, std::size_t length) : m_text(text, text + length) { set(length); }
    WideName(const WideName&) = delete;
    WideName& operator=(const WideName&) = delete;

    UNICODE_STRING* get() { return &m_name; }

  private:
    void set(std::size_t length) {
        m_name.Buffer = m_text.data();
        m_name.Length = static_cast<USHORT>(length * sizeof(WCHAR));
        m_name.MaximumLength = m_name.Length;
    }

    std::vector<WCHAR> m_text;
    UNICODE_STRING m_name{};
};

OBJECT_ATTRIBUTES attributesOf(HKEY parent, WideName& name) {
    OBJECT_ATTRIBUTES attributes{};
    attributes.Length = sizeof attributes;
    attributes.RootDirectory = parent;
    attributes.ObjectName = name.get();
    attributes.Attributes = OBJ_CASE_INSENSITIVE;
    return attributes;
}

[[noreturn]] void fail(const char* what, NTSTATUS status) {
    throw std::runtime_error(std::string(what) + ": status " + std::to_string(static_cast<unsigned long>(status)));
}

}  // namespace

HKEY createKey(HKEY parent, std::string_view name) {
    WideName wide(name);
    const OBJECT_ATTRIBUTES attributes = attributesOf(parent, wide);
    HANDLE key = nullptr;
    const NTSTATUS status = NtCreateKey(&key, KEY_ALL_ACCESS, &attributes, 0, nullptr, REG_OPTION_VOLATILE, nullptr);
    if (status < 0)
        fail("a key of its own cannot be made", status);
    return static_cast<HKEY>(key);
}

void setValue(HKEY key, const DescribedValue& value) {
    WideName name(value.name);
    const NTSTATUS status =
        NtSetValueKey(key, name.get(), 0, value.type, value.stored.data(), static_cast<ULONG>(value.stored.size()));
    if (status < 0)
        fail("a value of its own cannot be made", status);
}

bool deleteTree(HKEY key) {
    BasicKey child{};
    ULONG needed = 0;
    bool all = true;
    // What cannot be deleted is passed over, so that the loop ends.
    for (ULONG kept = 0; NtEnumerateKey(key, kept, kBasicInformation, &child, sizeof child, &needed) >= 0;) {
        WideName name(child.name, child.nameLength / sizeof(WCHAR));
        const OBJECT_ATTRIBUTES attributes = attributesOf(key, name);
        HANDLE opened = nullptr;
        const bool deleted =
            NtOpenKey(&opened, KEY_ALL_ACCESS, &attributes) >= 0 && deleteTree(static_cast<HKEY>(opened));
        if (opened != nullptr)
            RegCloseKey(static_cast<HKEY>(opened));
        if (!deleted)
            ++kept;
        all = all && deleted;
    }
    return NtDeleteKey(key) >= 0 && all;
}

}  // namespace conformance
