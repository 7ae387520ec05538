// The network providers in the order in which Windows asks them, and the protocols bound to them.
#include <cstring>
#include <memory>

#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/network/NetworkInformation.h"

namespace {

// Splits the text at commas; empty items vanish and blanks stay.
void SplitAtCommas(const CString& text, CStringList& items) {
    const std::size_t size = static_cast<std::size_t>(text.GetLength()) + 1;
    const std::unique_ptr<char[]> buffer(new char[size]);
    std::memcpy(buffer.get(), text, size);
    for (const char* item = std::strtok(buffer.get(), ","); item != nullptr; item = std::strtok(nullptr, ","))
        items.AddTail(item);
}

// The service behind a binding, "NetBT" in "\Device\NetBT_Tcpip_{...}"; null when there is none. Cuts the text up.
const char* BoundService(char* binding) {
    constexpr char kDelimiters[] = "\\_";
    return std::strtok(binding, kDelimiters) != nullptr ? std::strtok(nullptr, kDelimiters) : nullptr;
}

CString ServiceKey(const char* service, const char* subKey) {
    CString key;
    key.Format("SYSTEM\\CurrentControlSet\\Services\\%s\\%s", service, subKey);
    return key;
}

// The description of the service's first device.
int ReadDeviceDescription(const char* service, CString& description) {
    const CStatGlobal global;
    CString instance;
    const int status = global.GetRegString(HKEY_LOCAL_MACHINE, ServiceKey(service, "Enum"), "0", instance);
    if (status != 0)
        return status;
    return global.GetRegString(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Enum\\" + instance, "DeviceDesc",
                               description);
}

}  // namespace

int CNetworkInformation::GetNetworkProviders() {
    const CStatGlobal global;
    m_lstProviders.RemoveAll();
    m_lstProtocols.RemoveAll();
    switch (global.GetPlatformId()) {
        case VER_PLATFORM_WIN32_WINDOWS:
            return GetProviderOrder9x();
        case VER_PLATFORM_WIN32_NT:
            return GetProviderOrderNT();
        default:
            return -1;
    }
}

// Windows 9x names the providers by the values of a key.
int CNetworkInformation::GetProviderOrder9x() {
    const CStatGlobal global;
    const UniqueRegKey order(
        global.OpenRegKey(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\control\\NetworkProvider\\Order"));
    if (order == nullptr)
        return -1;
    int status = -1;
    for (DWORD index = 0;; ++index) {
        char service[1024] = {};
        DWORD length = sizeof service;
        if (RegEnumValueA(order.get(), index, service, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return status;
        status = AddProvider(service);
    }
}

int CNetworkInformation::GetProviderOrderNT() {
    const CStatGlobal global;
    const UniqueRegKey order(
        global.OpenRegKey(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\NetWorkProvider\\Order"));
    CString names;
    if (global.GetRegString(order.get(), "ProviderOrder", names) != 0)
        return -1;
    CStringList services;
    SplitAtCommas(names, services);
    int status = -1;
    for (POSITION place = services.GetHeadPosition(); place != nullptr;) {
        const CString& service = services.GetNext(place);
        AddProvider(service);
        status = AddProviderProtocols(service);
    }
    return status;
}

int CNetworkInformation::AddProvider(const char* service) {
    const CStatGlobal global;
    const UniqueRegKey provider(global.OpenRegKey(HKEY_LOCAL_MACHINE, ServiceKey(service, "NetWorkProvider")));
    if (provider == nullptr)
        return -1;
    CString name;
    global.GetRegString(provider.get(), "Name", name);
    m_lstProviders.AddTail(name);
    global.AppendString(m_cProviders, name, ";");
    return 0;
}

int CNetworkInformation::AddProviderProtocols(const char* service) {
    const CStatGlobal global;
    BYTE* data = nullptr;
    int status = global.GetRegBinary(HKEY_LOCAL_MACHINE, ServiceKey(service, "Linkage"), "Bind", data);
    if (status != 0)
        return -1;
    const std::unique_ptr<BYTE[]> bindings(data);
    // The zeros behind the data end a list that lacks its empty last item.
    for (char* binding = reinterpret_cast<char*>(data); *binding != '\0';) {
        char* const next = binding + std::strlen(binding) + 1;
        if (const char* boundService = BoundService(binding)) {
            CString description;
            status = ReadDeviceDescription(boundService, description);
            if (status == 0)
                AddProtocol(description);
        }
        binding = next;
    }
    return status;
}

void CNetworkInformation::AddProtocol(const CString& description) {
    const CStatGlobal global;
    if (m_lstProtocols.Find(description) != nullptr)
        return;
    m_lstProtocols.AddTail(description);
    global.AppendString(m_cProtocols, description, ";");
}
