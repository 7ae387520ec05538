#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/String.h"

// Writes into the caller's record, field by field, and never at or behind its end.
class RecordWriter {
  public:
    explicit RecordWriter(char* record) : m_record(record) {}

    // The first `limit` characters at most, without a terminator: the caller's zero behind them ends the field.
    void PutText(std::size_t offset, std::size_t limit, const CString& text) const;

    // A CD-ROM list takes its count from the BIOS date: a list that fits is cut, or padded with zeros, to the date's
    // length, and the padding of a long date runs on into the fields behind. One that does not fit is cut to `limit`.
    // Registered stations depend on it.
    void PutTextCountedBy(std::size_t offset, std::size_t limit, const CString& text, const CString& biosDate) const;

    // The whole text with its terminator.
    void PutOpenText(std::size_t offset, const CString& text) const;

    void PutNumber(std::size_t offset, std::uint32_t number) const;

  private:
    void Put(std::size_t offset, const char* text, std::size_t count) const;

    char* m_record;
};
