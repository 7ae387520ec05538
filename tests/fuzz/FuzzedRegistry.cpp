#include "tests/fuzz/FuzzedRegistry.h"

#include <optional>
#include <string>
#include <string_view>

#include "tests/fuzz/FuzzedText.h"

namespace kvfuzz {
namespace {

// A star becomes a name out of the input. New places are appended: of a kept input, a byte below their former number
// means what it did.
constexpr RegistryPlace kPlaces[] = {
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Citrix", "ProductName"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Citrix", "ProductVersion"},
    {"HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Control\\ProductOptions", "ProductSuite"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Terminal Server", "ProductName"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Terminal Server", "ProductVersion"},
    {"HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvel\\KelVor\\KelVor Client\\Settings", "KVVDIClient"},
    {"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\WinLogon", "DefaultDomainName"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\NetBT\\Adapters\\*", ""},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\*\\Parameters\\Tcpip", "SubNetMask"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\*\\Parameters\\Tcpip", "DefaultGateway"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Adapters\\*", ""},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Interfaces\\*", "IPAddress"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Interfaces\\*", "SubNetMask"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\TCPIP\\Parameters\\Interfaces\\*", "DefaultGateway"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans\\*", "DriverDesc"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans\\*", "IPAddress"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans\\*", "IPMask"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\class\\NetTrans\\*", "DefaultGateway"},
    {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\NetworkCards\\*", "Description"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\NetWorkProvider\\Order", "ProviderOrder"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\NetWorkProvider\\Order", "*"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\*\\NetWorkProvider", "Name"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\*\\Linkage", "Bind"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\*\\Enum", "0"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\*\\*", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\*\\*", "Class"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\HTREE\\ROOT\\0", "AttachedComponents"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\*", "Class"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\*", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Enum\\Display\\*\\*", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Services\\Class\\*\\*", "DriverDesc"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Root\\*\\*", "Class"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Root\\*\\*", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Root\\*\\*", "Driver"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Root\\*\\*", "BIOSVersion"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Root\\*\\*", "BIOSDate"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Root\\*\\*", "MachineType"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Root\\*\\0000", "Class"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Root\\*\\0000", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\Enum\\ISAPNP\\*\\*", "Class"},
    {"HKEY_LOCAL_MACHINE\\Enum\\PCI\\*\\*", "Class"},
    {"HKEY_LOCAL_MACHINE\\Enum\\PCI\\*\\*", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\Enum\\ESDI\\*\\*", "Class"},
    {"HKEY_LOCAL_MACHINE\\Enum\\ESDI\\*\\*", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\Enum\\Monitor\\Default_Monitor\\0001", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DEVICEMAP\\Scsi\\*\\*\\*\\Logical Unit Id *", "Identifier"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DEVICEMAP\\Scsi\\*\\*\\*\\Logical Unit Id *", "Type"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DEVICEMAP\\VIDEO", "\\Device\\Video0"},
    {"HKEY_LOCAL_MACHINE\\System\\Video0", "Device Description"},
    {"HKEY_LOCAL_MACHINE\\System\\Video0", "HardwareInformation.AdapterString"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System", "Identifier"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System", "SystemBiosDate"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System", "SystemBiosVersion"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System", "VideoBiosDate"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System", "VideoBiosVersion"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", "ProcessorNameString"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", "Identifier"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", "~MHz"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\1", "ProcessorNameString"},
    {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion", "RegisteredOwner"},
    {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion", "ProductId"},
    {"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices", "*"},
    {"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows", "device"},
    {"HKEY_CURRENT_CONFIG\\System\\CurrentControlSet\\Control\\Print\\Printers", "default"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\*", "Description"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\*", "Port"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\*", "Printer Driver"},
    {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Internet Explorer", "Version"},
    {"HKEY_LOCAL_MACHINE\\Software\\Mozilla\\Mozilla Firefox", "CurrentVersion"},
    {"HKEY_LOCAL_MACHINE\\Software\\Netscape\\Netscape\\*", ""},
    {"HKEY_LOCAL_MACHINE\\Software\\Netscape\\Netscape Navigator Gold\\*", ""},
    {"HKEY_LOCAL_MACHINE\\Software\\Netscape\\*\\*\\Main", "PathToExe"},
    {"HKEY_CURRENT_USER\\Software\\Opera Software", "Last Directory3"},
    {"HKEY_LOCAL_MACHINE\\SOFTWARE\\Clients\\Mail\\*", ""},
    {"HKEY_CLASSES_ROOT\\.html", ""},
    {"HKEY_CLASSES_ROOT\\htmlfile\\shell\\open\\command", ""},
    {"HKEY_CLASSES_ROOT\\.ica", ""},
    {"HKEY_CLASSES_ROOT\\icafile\\shell\\open\\command", ""},
    {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion", "RegisteredOrganization"},
    {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion", "ProductId"},
    {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion", "RegisteredOwner"},
    {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion", "RegisteredOrganization"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\*", "ProcessorNameString"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\*", "Identifier"},
    {"HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\*", "~MHz"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\*\\Parameters\\Tcpip", "IPAddress"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\*\\*\\*", "Class"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\*\\*\\*", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\Enum\\ISAPNP\\*\\*", "DeviceDesc"},
    {"HKEY_LOCAL_MACHINE\\Enum\\ISAPNP\\*\\*", "Driver"},
    {"HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\*", "Name"},
    {"HKEY_CLASSES_ROOT\\*\\shell\\open\\command", ""},
};

std::string withNames(InputReader& input, std::string_view pattern) {
    std::string text;
    for (const char character : pattern) {
        if (character == '*')
            text += readKeyName(input);
        else
            text += character;
    }
    return text;
}

// Wide as the registry keeps texts that a driver wrote as bytes.
std::string widened(std::string_view text) {
    std::string wide;
    for (const char character : text)
        wide.append({character, '\0'});
    return wide;
}

// The ends that a text can have: proper, none, doubled, odd.
std::string withEnd(InputReader& input, std::string text) {
    switch (input.below(8)) {
        case 0:
            return text;
        case 1:
            return text + std::string(2, '\0');
        case 2:
            return widened(text) + std::string(2, '\0');
        case 3:
            return widened(text) + std::string(1, '\0');
        case 4:
            return widened(text) + "x";
        default:
            return text + '\0';
    }
}

simwin::RegistryValue readValue(InputReader& input, std::string name) {
    static constexpr simwin::RegistryType kTypes[] = {
        simwin::RegistryType::Text,       simwin::RegistryType::Text,   simwin::RegistryType::Text,
        simwin::RegistryType::MultiText,  simwin::RegistryType::Binary, simwin::RegistryType::DWord,
        simwin::RegistryType::ExpandText, simwin::RegistryType::None,
    };
    const auto type = static_cast<std::uint32_t>(input.oneOf(kTypes));
    return {std::move(name), type, withEnd(input, readText(input))};
}

}  // namespace

std::span<const RegistryPlace> fuzzedPlaces() {
    return kPlaces;
}

std::string addRegistryItem(InputReader& input, simwin::RegistryTree& registry) {
    const RegistryPlace& place = input.oneOf(kPlaces);
    std::string path = withNames(input, place.key);
    const std::optional<simwin::KeyId> key = registry.create(path);
    if (key && input.below(16) != 0)
        registry.set(*key, readValue(input, withNames(input, place.value)));
    return path;
}

}  // namespace kvfuzz
