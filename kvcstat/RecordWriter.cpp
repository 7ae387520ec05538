#include "kvcstat/RecordWriter.h"

#include <algorithm>
#include <cstring>

#include "include/kvcstat.h"

namespace {

std::size_t LengthOf(const CString& text) {
    return static_cast<std::size_t>(text.GetLength());
}

}  // namespace

void RecordWriter::PutText(std::size_t offset, std::size_t limit, const CString& text) const {
    Put(offset, text, std::min(LengthOf(text), limit));
}

void RecordWriter::PutTextCountedBy(std::size_t offset, std::size_t limit, const CString& text,
                                    const CString& biosDate) const {
    Put(offset, text, LengthOf(text) <= limit ? LengthOf(biosDate) : limit);
}

void RecordWriter::PutOpenText(std::size_t offset, const CString& text) const {
    Put(offset, text, LengthOf(text) + 1);
}

void RecordWriter::PutNumber(std::size_t offset, std::uint32_t number) const {
    std::memcpy(m_record + offset, &number, sizeof number);
}

void RecordWriter::Put(std::size_t offset, const char* text, std::size_t count) const {
    std::strncpy(m_record + offset, text, std::min(count, KVCSTAT_RECORD_SIZE - offset));
}
