// Standard output belongs to the result alone, and standard error to the tool's own lines. While this object lives,
// what a library writes to that stream goes nowhere.
#pragma once

#include <string_view>

namespace kvstation {

inline constexpr int kStandardOutput = 1;
inline constexpr int kStandardError = 2;

class StreamAside {
  public:
    // `file`: one of the two numbers above.
    explicit StreamAside(int file);
    StreamAside(const StreamAside&) = delete;
    StreamAside& operator=(const StreamAside&) = delete;
    ~StreamAside();

    // The number of the stream as it was; -1 when it was closed.
    int kept() const { return m_kept; }

  private:
    int m_file;
    int m_kept;
};

// All of it, as it is, to the stream of that number, which may be one that was kept. False: it takes no more, and errno
// says why.
bool writeTo(int file, std::string_view bytes);

}  // namespace kvstation
