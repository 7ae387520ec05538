// Text on its way to standard output: a person sees it as it comes, a pipe gets it in blocks.
#pragma once

#include <string>
#include <string_view>

#include "kvstation/platform/Output.h"

namespace kvstation {

class ResultBuffer {
  public:
    void add(std::string_view text) {
        m_text += text;
        if (m_isTerminal || m_text.size() >= kBlock)
            flush();
    }
    void flush() {
        writeResult(m_text);
        m_text.clear();
    }

  private:
    static constexpr std::size_t kBlock = std::size_t{1} << 16;

    const bool m_isTerminal = standardOutput().isTerminal;
    std::string m_text;
};

}  // namespace kvstation
