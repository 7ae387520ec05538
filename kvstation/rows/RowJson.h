// Rows as NDJSON: one JSON object a line, which docs/station-row.schema.json describes.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "kvstation/rows/StationRow.h"

namespace kvstation {

class RowJsonWriter {
  public:
    explicit RowJsonWriter(FieldList fields);
    RowJsonWriter(const RowJsonWriter&) = delete;
    RowJsonWriter& operator=(const RowJsonWriter&) = delete;
    ~RowJsonWriter();

    // With its end of line.
    std::string line(const StationRow& row);

  private:
    struct Template;
    std::unique_ptr<Template> m_template;
};

// The name in a line, without reading the rest of it; nothing where it has none, and is no row for certain.
std::optional<std::string> nameInRow(std::string_view line);

// The record in a line that has every field. Throws Failure, in one line that begins with `where`.
Record recordInRow(std::string_view line, const std::string& where);

}  // namespace kvstation
