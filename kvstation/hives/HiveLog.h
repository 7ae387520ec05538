// The logs beside a hive, in which Windows keeps what it has not written into the hive itself.
#pragma once

#include <string>
#include <vector>

namespace kvstation {

// A longer hive is refused, a longer log left out.
inline constexpr std::size_t kLongestHive = std::size_t{256} << 20;
inline constexpr std::size_t kLongestLog = std::size_t{64} << 20;

struct LogFile {
    std::string path;
    std::string bytes;
};

// Applies to a hive's bytes what Windows would apply at its next start: entries since Windows 8.1, pages of 512 bytes
// before. Gives what each log gave, such as "entries 7 to 9 of SYSTEM.LOG1"; none when no log goes with the hive, which
// then stays as it was.
std::vector<std::string> applyLogs(std::string& hive, const std::vector<LogFile>& logs);

}  // namespace kvstation
