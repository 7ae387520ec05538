// A described station: what a whole machine would tell, as plain values.
//
// Everything is optional; what is not described fails or is absent, as Windows would answer on such a machine.
// Texts are bytes of its ANSI code page. What a member means, and how station.json tells it, is in StationMembers.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simwin/station/RegistryTree.h"
#include "simwin/text/CodePage.h"

namespace simwin {

using OptionalText = std::optional<std::string>;

// The names that lead to a member of station.json, such as "environment", "KVUser"; in UTF-8.
using MemberPath = std::vector<std::string>;

struct CodePages {
    unsigned ansi = kDefaultCodePage;
    unsigned oem = 437;
};

struct WindowsVersion {
    std::uint32_t platformId = 2;
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    std::string servicePack;
    bool terminalServices = false;
};

struct Keyboard {
    int type = 0;
    int subType = 0;
};
// By what GetKeyboardType is asked with; name and meaning are those of the member of station.json.
struct KeyboardNumber {
    int Keyboard::*number;
    const char* name;
    const char* meaning;
};
inline constexpr KeyboardNumber kKeyboardNumbers[] = {{&Keyboard::type, "type", "GetKeyboardType(0)"},
                                                      {&Keyboard::subType, "subType", "GetKeyboardType(1)"}};

struct User {
    OptionalText name;
    OptionalText samCompatible;
    OptionalText displayName;
    OptionalText principal;
    OptionalText network;
    OptionalText directory;
};

struct Variable {
    std::string name;
    std::string value;
};

struct Process {
    std::uint32_t id = 0;
    std::optional<std::uint32_t> sessionId;
};

struct Processors {
    std::uint16_t architecture = 0;
    std::uint32_t count = 0;
    std::uint32_t type = 0;
    std::uint16_t level = 0;
    std::uint16_t revision = 0;
    std::vector<std::uint32_t> currentMhz;
};

struct Memory {
    std::uint64_t physical = 0;
    std::uint64_t virtualSize = 0;
};

struct Clusters {
    std::uint32_t sectorsPerCluster = 0;
    std::uint32_t bytesPerSector = 0;
    std::uint32_t free = 0;
    std::uint32_t total = 0;
};

struct Drive {
    std::uint32_t type = 0;
    OptionalText label;
    OptionalText fileSystem;
    std::uint32_t serial = 0;
    std::optional<std::uint64_t> total;
    std::uint64_t free = 0;
    std::optional<std::uint64_t> totalFree;
    std::optional<Clusters> clusters;
};

using FileVersion = std::array<std::uint16_t, 4>;

// "6.0.2900.2180".
inline std::string versionText(const FileVersion& version) {
    return std::to_string(version[0]) + "." + std::to_string(version[1]) + "." + std::to_string(version[2]) + "." +
           std::to_string(version[3]);
}

struct File {
    std::string path;  // such as C:\WINDOWS\system32\mstscax.dll, in its real letter case
    std::optional<FileVersion> version;
    OptionalText resource;
};

struct Host {
    std::string hostName;  // asked for, without regard to case
    std::string name;      // the official name in the answer
    int addressType = 2;
    std::vector<std::string> addresses;  // raw bytes in network order; the first one's size is the answer's h_length

    // How an answer breaks what a resolver promises.
    bool nullName = false;            // h_name is null
    bool nullAddresses = false;       // h_addr_list is null
    std::optional<int> lengthSaid{};  // h_length, whatever the addresses are
};

struct ReverseEntry {
    std::string address;  // dotted
    std::string name;
};

struct ArpEntry {
    std::string address;   // dotted
    std::string physical;  // raw bytes, at most 16
};

struct Lana {
    std::uint8_t number = 0;
    OptionalText address;  // 6 raw bytes
};

struct StationNetwork {
    OptionalText hostName;
    std::vector<Host> hosts;
    std::vector<ReverseEntry> addresses;
    std::vector<ArpEntry> arp;
    std::vector<Lana> netbios;
    OptionalText lanGroup;
    OptionalText domain;

    bool hostNameEnds = true;  // false: of a host name that does not fit gethostname copies what does, without a NUL
};

// A text that a companion's call fills into a buffer.
struct CompanionText {
    std::string text;
    int result = 1;
    bool terminated = true;  // false: as of a library that forgets the NUL
};

struct Session {
    std::optional<CompanionText> clientName;
    std::optional<CompanionText> clientAddress;
    std::optional<CompanionText> domain;
    int id = 0;
};

struct Citrix {
    std::optional<CompanionText> clientName;
};

struct ProfileEntry {
    std::string section;
    std::string entry;
    std::string value;
};

// The errors that calls always give; 0: the call's own.
using CallErrors = std::map<std::string, std::uint32_t, std::less<>>;

// Of a station that was captured. Texts in UTF-8; one that is not known is empty.
struct Collected {
    std::string at;       // "2026-11-22T12:00:00Z"
    std::string library;  // "1.2.0.0"
    std::string tool;

    bool operator==(const Collected&) const = default;
};

struct Station {
    std::string description;
    std::optional<Collected> collected;
    CodePages codePages;
    std::optional<WindowsVersion> version;
    std::optional<Keyboard> keyboard;
    OptionalText computerName;
    User user;
    std::vector<Variable> environment;
    std::optional<Process> process;
    std::optional<Processors> processors;
    std::optional<Memory> memory;
    std::map<char, Drive> drives;  // by upper-case letter
    std::vector<File> files;
    StationNetwork network;
    Session session;
    std::optional<Citrix> citrix;
    std::optional<int> vcdVersion;
    std::vector<ProfileEntry> profile;
    std::vector<std::string> missing;  // "library" or "library!function"
    CallErrors fails;
    std::vector<std::string> deniedKeys;  // full paths
    // What lies below one of them and is not described is not "not there" but "not written down", for people.
    std::vector<std::string> unknown;
    // Members that were asked for and are known not to be there, by their path: null in station.json.
    std::vector<MemberPath> absent;
    RegistryTree registry;
};

}  // namespace simwin
