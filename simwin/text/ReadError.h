#pragma once

#include <stdexcept>

namespace simwin {

// A station folder that cannot be read: one line that says which file, where in it, and what is wrong.
class ReadError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace simwin
