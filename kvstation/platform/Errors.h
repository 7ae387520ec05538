// What goes wrong, in one place: the one line that people read, and the exit status that scripts see.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kvstation {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitWrongUse = 2;
inline constexpr int kExitNotCompared = 2;  // of a verb whose failure says that two things differ

// It did not work.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The command line asks for something that there is not.
class WrongUse : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A system call that failed, what it was asked, and the system's code and text:
// "CreateProcessW(C:\kv\kvstation.exe) failed: The system cannot find the file specified. (error 2)".
std::string describeSystemError(std::string_view call, std::string_view asked, std::uint32_t code);

// The same for a call of the C library, by errno.
std::string describeLibraryError(std::string_view call, std::string_view asked, int code);

// A file that could not be read, written or whatever `done` says, by errno:
// "record.bin cannot be read: No such file or directory (error 2)".
std::string describeFileError(std::string_view path, std::string_view done, int code);

// Writes the line to standard error behind the tool's name. Characters that would break the line are spelled out,
// and a line that nobody would read to its end is cut.
void reportError(std::string_view message);

}  // namespace kvstation
