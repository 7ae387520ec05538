// Keys of Windows NT that several tests of hives describe.
#pragma once

#include <string>

namespace kvstation {

inline const std::string kSet = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\";
inline const std::string kControl = kSet + "Control\\";
inline const std::string kEnvironment = kControl + "Session Manager\\Environment";
inline const std::string kVersion = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";

}  // namespace kvstation
