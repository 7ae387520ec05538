// Hive files of any form, opened.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kvstation/hives/Hive.h"
#include "kvstation/hives/HiveLog.h"

namespace kvstation {

enum class HiveForm { Nt, Windows9x };

struct OpenedHive {
    std::string path;
    HiveForm form;
    std::unique_ptr<Hive> hive;
    std::vector<std::string> remarks;  // a line for each thing that the file did not hold as Windows leaves it
};

// What Windows had begun to write and had not ended is taken from the logs beside the file, in memory alone. Throws
// Failure for what is no hive, is too long, or has nothing of use.
OpenedHive openHive(const std::string& path);

// The same of a file's bytes, with the logs that lie beside it. `path` is the name that people are told.
OpenedHive openHive(const std::string& path, std::string bytes, const std::vector<LogFile>& logs);

}  // namespace kvstation
