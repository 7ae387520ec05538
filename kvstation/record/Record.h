// A station record with its values decoded.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "include/kvcstat.h"
#include "kvstation/record/FieldTable.h"

namespace kvstation {

// What a caller of the module owns. Zeros at first, as the module expects it.
using RecordBytes = std::array<char, KVCSTAT_RECORD_SIZE>;

// The fields that do not hold the same bytes, as indexes into fields(), in the order of their offsets.
std::vector<std::size_t> differingFields(const RecordBytes& left, const RecordBytes& right);

struct Value {
    std::string text;         // of a text field, in UTF-8; bytes that are no character stand as they are
    std::int64_t number = 0;  // of a number
    std::size_t filled = 0;   // how many bytes of the field the value takes; 0 when it is empty
    std::string bytes;        // of a text field as the record holds it, in its code page
};

// The values in the order of fields().
class Record {
  public:
    Record() : m_values(fields().size()) {}
    // Texts are read as those of the ANSI code page in force.
    explicit Record(const RecordBytes& bytes);

    const Value& operator[](std::size_t field) const { return m_values[field]; }
    Value& operator[](std::size_t field) { return m_values[field]; }

    // By the field's name, which must be one of the record.
    const Value& at(std::string_view name) const { return m_values.at(findField(name)); }

    // Nothing was found: an empty text, or a 0 that means "no" or "unknown". Session 0 is a session.
    bool isEmpty(std::size_t field) const;

    // A text as it is, a number in decimal.
    std::string textOf(std::size_t field) const;

  private:
    std::vector<Value> m_values;
};

}  // namespace kvstation
