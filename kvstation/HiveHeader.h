// The first block of a registry hive file, which tells what is wrong with a file in clearer words than its parser.
#pragma once

#include <string>

namespace kvstation {

// True when the file's two sequence numbers differ: Windows had begun to write it and had not ended. Throws Failure for
// what is no file, no hive, or cut short.
bool checkHiveHeader(const std::string& path);

}  // namespace kvstation
