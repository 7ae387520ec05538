// Keys of the registry that several tests describe.
#pragma once

namespace kvtest {

inline constexpr char kCitrix[] = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Citrix";
inline constexpr char kClasses[] = "HKEY_CLASSES_ROOT\\";
inline constexpr char kDevices[] = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices";
inline constexpr char kExplorer[] = "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Internet Explorer";
inline constexpr char kFirefox[] = "HKEY_LOCAL_MACHINE\\Software\\Mozilla\\Mozilla Firefox";
inline constexpr char kMail[] = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Clients\\Mail";
inline constexpr char kTerminalServer[] = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Terminal Server";

}  // namespace kvtest
