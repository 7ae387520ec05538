// A form that prints each row's text, behind a header.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "kvstation/forms/RowForm.h"
#include "kvstation/sets/ResultBuffer.h"

namespace kvstation {

class PrintedForm : public RowForm {
  public:
    using Encode = std::function<std::string(const StationRow&)>;

    explicit PrintedForm(Encode encode, std::string header = {})
        : m_encode(std::move(encode)), m_header(std::move(header)) {}

    std::string encode(const StationRow& row) override { return m_encode(row); }
    void begin() override { m_output.add(m_header); }
    void take(std::string_view encoded) override { m_output.add(encoded); }
    void finish() override { m_output.flush(); }

  private:
    Encode m_encode;
    std::string m_header;
    ResultBuffer m_output;
};

}  // namespace kvstation
