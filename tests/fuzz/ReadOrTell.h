// What a reader of files promises: what they describe, or one line that names the file.
#pragma once

#include <string>
#include <string_view>

#include "simwin/text/ReadError.h"
#include "tests/fuzz/Check.h"

namespace kvfuzz {

// False when the reader refused what it read.
template <class Refusal = simwin::ReadError, class Read>
bool readOrTell(std::string_view fileName, const Read& read) {
    try {
        read();
        return true;
    } catch (const Refusal& error) {
        const std::string_view line = error.what();
        check(line.starts_with(fileName), "the error names the file");
        check(line.find('\n') == std::string_view::npos, "the error is one line");
        wasRefused = true;
        return false;
    }
}

}  // namespace kvfuzz
