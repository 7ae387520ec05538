// Logs of registry hives for tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kvstation {

struct LogPage {
    std::size_t place;  // in the bins
    std::string bytes;
};
struct LogEntry {
    std::uint32_t sequence;
    std::vector<LogPage> pages;
};

// A log of entries for the hive: its first block has the first entry's number.
std::string logOfEntries(const std::string& hive, const std::vector<LogEntry>& entries);

// A log of pages of 512 bytes in the order of their places.
std::string logOfPages(const std::string& hive, const std::vector<LogPage>& pages);

// The hive as Windows leaves it when it ends in the midst of writing: the first sequence number one ahead.
std::string unfinished(std::string hive);

}  // namespace kvstation
