// What the suite finds on the computer: keys, values, files, variables and a profile, described once. The world of each
// build makes them: on Windows in the real registry and on disk, natively as a station that simwin answers from.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace conformance {

// Names and paths are bytes of code page 1252.
struct DescribedValue {
    std::string name;
    std::uint32_t type = 0;
    std::string stored;  // the bytes that the registry keeps: of a text type UTF-16LE, whether whole or not
    std::string answer;  // the bytes that the narrow calls tell
};

struct DescribedKey {
    std::string path;  // below the suite's own key; a name may hold a NUL
    std::vector<DescribedValue> values;
};

struct DescribedFile {
    std::string path;              // below the suite's own folder
    bool hasVersion = false;       // a program with a version resource, that of this project
    std::string content = "text";  // of one without
};

struct DescribedVariable {
    std::string name;
    std::string value;
};

struct DescribedEntry {
    std::string name;
    std::string written;  // what stands behind "=" in the file
};

// The keys in the order in which they are made.
const std::vector<DescribedKey>& describedKeys();
// The values of the key "Values".
const std::vector<DescribedValue>& describedValues();
const std::vector<DescribedFile>& describedFiles();
const std::vector<DescribedVariable>& describedVariables();

// The entries of the section kSection in the file kProfile of the suite's own folder.
inline constexpr char kProfile[] = "kvcstat64.ini";
inline constexpr char kSection[] = "windows";
const std::vector<DescribedEntry>& describedEntries();

}  // namespace conformance
