// What the registry and the system's numbers tell of the hardware.
#include <algorithm>
#include <map>

#include "tests/faults/StationTexts.h"

namespace kvtest {
namespace {

constexpr char kSystem[] = "HARDWARE\\DESCRIPTION\\System";

std::string trimmed(const std::string& text) {
    const char* const blanks = " \t\n\v\f\r";
    const std::size_t start = text.find_first_not_of(blanks);
    return start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

// The names of keyboards by their type, from 1 on.
constexpr const char* kKeyboardTypes[] = {
    "IBM PC/XT or compatible keyboard (83 keys) ",
    "Olivetti \"ICO\" keyboard (102 keys) ",
    "IBM PC/AT (84 keys) or similar keyboard",
    "Extended IBM keyboard (101 or 102 keys) ",
    "Nokia 1050 and similar keyboards",
    "Nokia 9140 or similar keyboard",
    "Japanese keyboard",
};

// Names of processors by number; the last one is for any other.
struct ProcessorType {
    unsigned number;
    const char* name;
};
constexpr unsigned kAnyOther = 0xFFFFFFFF;
constexpr ProcessorType kTypes9x[] = {{386, "Intel 80386"}, {486, "Intel 80486"},   {586, "Intel Pentium"},
                                      {4000, "MIPS R4000"}, {21064, "Alpha 21064"}, {kAnyOther, ""}};
constexpr ProcessorType kIntel[] = {
    {3, "Intel 80386"}, {4, "Intel 80486"}, {5, "Intel Pentium"}, {kAnyOther, "Intel processor"}};
constexpr ProcessorType kIntelSuffixes[] = {{3, "-D0"}, {4, "-E0"}, {5, "(5.0)"}, {kAnyOther, ""}};
constexpr ProcessorType kMips[] = {{4, "MIPS R4000"}, {kAnyOther, "MIPS processor"}};
constexpr ProcessorType kAlpha[] = {
    {21064, "Alpha 21064"}, {21066, "Alpha 21066"}, {21164, "Alpha 21164"}, {kAnyOther, "Alpha processor"}};
constexpr ProcessorType kPowerPC[] = {{1, "PPC 601"},
                                      {3, "PPC 603"},
                                      {4, "PPC 604"},
                                      {6, "PPC 603+"},
                                      {9, "PPC 604+"},
                                      {20, "PPC 620"},
                                      {kAnyOther, "PPC processor"}};

template <std::size_t N>
std::string typeName(const ProcessorType (&types)[N], unsigned number) {
    return std::find_if(types, types + N - 1, [&](const ProcessorType& type) { return type.number == number; })->name;
}

// A name of the string table with the suffix behind it, or the suffix alone where that name cannot be loaded.
Texts processorTypesNT(const simwin::Processors& processors) {
    switch (processors.architecture) {
        case 0: {
            const std::string suffix = typeName(kIntelSuffixes, processors.level);
            return {typeName(kIntel, processors.level) + suffix, suffix};
        }
        case 1:
            return {typeName(kMips, processors.level & 0xFFU)};
        case 2:
            return {typeName(kAlpha, processors.level)};
        case 3:
            return {typeName(kPowerPC, processors.level)};
        default:
            return {"Unknown processor"};
    }
}

std::string kindOf(const std::string& deviceClass) {
    static const std::map<std::string, std::string, std::less<>> kinds = {{"diskperipheral", "disk"},
                                                                          {"diskdrive", "disk"},
                                                                          {"cdromperipheral", "cdrom"},
                                                                          {"cdrom", "cdrom"},
                                                                          {"tapeperipheral", "tape"}};
    const auto found = kinds.find(lowerCase(deviceClass));
    return found != kinds.end() ? found->second : "other";
}

// Devices of one description.
struct Group {
    int count = 0;
    Texts kinds;
};

Texts counted(int most, const std::string& description) {
    Texts texts;
    for (int count = 1; count <= most; ++count)
        texts.insert(std::to_string(count) + " " + description);
    return texts;
}

}  // namespace

// Windows 9x: the devices among which the BIOS is. The last one counts, and an earlier one where that cannot be read.
Texts StationTexts::biosValues(const char* value) const {
    Texts texts;
    for (const auto key : isWindows9x() ? m_registry.keysAt("Enum\\Root\\*\\*") : DescribedRegistry::Keys()) {
        const auto text = m_registry.text(key, value);
        if (text && m_registry.text(key, "BIOSVersion"))
            texts.insert(*text);
    }
    return texts;
}

// Windows 9x: the system's own identifier is left where there is no machine type.
Texts StationTexts::systemIdentifiers() const {
    Texts texts = biosValues("MachineType");
    if (const auto identifier = m_registry.text(kSystem, "Identifier"))
        texts.insert(*identifier);
    return texts;
}

Texts StationTexts::biosVersions() const {
    return biosValues("BIOSVersion");
}

Texts StationTexts::biosDates() const {
    Texts texts = biosValues("BIOSDate");
    if (const auto date = m_registry.text(kSystem, "SystemBiosDate"); date && isWindowsNT())
        texts.insert(*date);
    return texts;
}

// The keyboard's description, or that of a later one where the first cannot be told to be one; else its type's name.
Texts StationTexts::keyboards() const {
    Texts texts;
    const int type = m_station.keyboard ? m_station.keyboard->type : 0;
    if (type >= 1 && type <= static_cast<int>(std::size(kKeyboardTypes)))
        texts.insert(kKeyboardTypes[type - 1]);
    std::vector<std::string> keys = {"Enum\\Root\\*\\0000"};
    if (isWindowsNT()) {
        keys = m_registry.list("SYSTEM\\CurrentControlSet\\Enum\\HTREE\\ROOT\\0", "AttachedComponents");
        for (std::string& key : keys)
            key.insert(0, "SYSTEM\\CurrentControlSet\\Enum\\");
    }
    for (const std::string& path : keys) {
        for (const auto key : m_registry.devicesAt(path, "keyboard"))
            texts.insert(m_registry.text(key, "DeviceDesc").value_or(""));
    }
    return texts;
}

// Windows NT: up to the first one that has no name.
Items StationTexts::processors() const {
    Items items;
    for (int index = 0; isWindowsNT(); ++index) {
        const auto name =
            m_registry.text(kSystem + ("\\CentralProcessor\\" + std::to_string(index)), "ProcessorNameString");
        if (!name)
            break;
        items.push_back({trimmed(*name)});
    }
    return items;
}

Texts StationTexts::processorTypes() const {
    const simwin::Processors processors = m_station.processors.value_or(simwin::Processors());
    return isWindows9x() ? Texts{typeName(kTypes9x, processors.type)} : processorTypesNT(processors);
}

// Devices are counted by their description, in the list of the first one's class. A failure takes a device's
// description, so that it is counted under none; its class, so that it is counted with the others; or both, where the
// platform cannot be told.
Items StationTexts::devices(std::string_view kind) const {
    const bool isOther = kind == "other";
    const auto keys = m_registry.keysAt(isWindows9x() ? "Enum\\ESDI\\*\\*" : "HARDWARE\\DEVICEMAP\\Scsi\\*\\*\\*\\*");
    std::map<std::string, Group> groups;
    Texts kinds;
    for (const auto key : keys) {
        Group& group = groups[m_registry.text(key, isWindows9x() ? "DeviceDesc" : "Identifier").value_or("")];
        ++group.count;
        group.kinds.insert(kindOf(m_registry.text(key, isWindows9x() ? "Class" : "Type").value_or("")));
        kinds.insert(group.kinds.begin(), group.kinds.end());
    }
    const int unnamed = groups[""].count;
    groups.erase("");
    Items items;
    for (const auto& [description, group] : groups) {
        if (isOther || group.kinds.contains(std::string(kind)))
            items.push_back(counted(group.count, description));
    }
    if (isOther ? !keys.empty() : kinds.contains(std::string(kind)))
        items.push_back(counted(unnamed + 1, ""));
    return items;
}

Items StationTexts::printers() const {
    const auto names = isWindows9x()
                           ? m_registry.subKeyNames("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers")
                           : m_registry.valueNames(simwin::Hive::CurrentUser,
                                                   "Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices");
    Items items;
    for (const std::string& name : names)
        items.push_back({name});
    return items;
}

// Windows NT: what stands there until a monitor's description is read.
Texts StationTexts::monitors() const {
    return isWindowsNT() ? Texts{"unknown"} : Texts();
}

// Windows NT: the driver's description, else the BIOS version, else the adapter's own text. One failure passes over one
// of them, so that the third never shows where the first two are there.
Texts StationTexts::videoAdapters() const {
    const std::string prefix = "\\REGISTRY\\Machine\\";
    const std::string path = m_registry.text("HARDWARE\\DEVICEMAP\\VIDEO", "\\Device\\Video0").value_or("");
    const std::string driver = path.starts_with(prefix) ? path.substr(prefix.size()) : "";
    const auto ofDriver = [&](const char* value) {
        return driver.empty() ? std::nullopt : m_registry.text(driver, value);
    };
    std::vector<std::string> present;
    for (const auto& text : {ofDriver("Device Description"), m_registry.text(kSystem, "VideoBiosVersion"),
                             ofDriver("HardwareInformation.AdapterString")}) {
        if (text)
            present.push_back(*text);
    }
    return {present.begin(), present.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(present.size(), 2))};
}

// Windows 9x: the second enumerator is looked through where the last adapter of the first could not be read.
Items StationTexts::displayAdapters() const {
    Items items;
    for (const char* enumerator : {"Enum\\PCI\\*\\*", "Enum\\Root\\*\\*"}) {
        for (const auto key : m_registry.devicesAt(enumerator, "display")) {
            if (const auto description = m_registry.text(key, "DeviceDesc"))
                items.push_back({*description});
        }
    }
    return items;
}

}  // namespace kvtest
